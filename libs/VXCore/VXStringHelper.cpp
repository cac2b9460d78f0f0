#include "VXStringHelper.h"

#include "VXDeploymentConfig.h"

#include <QtCore/QSet>
#include <QtCore/QStringList>

using namespace Qt::StringLiterals;

namespace {

constexpr qsizetype longestName = 64;
constexpr auto mask = "***"_L1;

QSet<QString> secretNames()
{
    QSet<QString> names{
        u"password"_s, u"pwd"_s,   u"client_secret"_s, u"refresh_token"_s, u"access_token"_s,
        u"id_token"_s, u"token"_s, u"code"_s,          u"code_verifier"_s, u"authorization"_s};
    for (const QString& name : VXDeploymentConfig::instance()->list(u"Log/maskedNames"_s))
        names.insert(name.trimmed().toLower());
    return names;
}

bool isNameCharacter(QChar theChar)
{
    return theChar.isLetterOrNumber() || theChar == u'_' || theChar == u'-' || theChar == u'.';
}

// Goes through the text once, from the left to the right; what it has passed it never sees again.
class Masker
{
public:
    explicit Masker(const QString& theText)
        : myText(theText)
        , myNames(secretNames())
    {
    }

    QString run()
    {
        while (!isAtEnd()) {
            if (isNameCharacter(current()))
                readName();
            else
                readOther();
        }
        return myResult + myText.sliced(myCopied);
    }

private:
    [[nodiscard]] bool isAtEnd() const { return myPosition >= myText.size(); }
    [[nodiscard]] QChar current() const { return at(myPosition); }
    [[nodiscard]] QChar at(qsizetype thePosition) const
    {
        const bool isInside = thePosition >= 0 && thePosition < myText.size();
        return isInside ? myText.at(thePosition) : QChar();
    }

    void readOther()
    {
        if (current() == u'<')
            myElementStart = myPosition + 1;
        ++myPosition;
    }

    void readName()
    {
        const qsizetype start = myPosition;
        while (!isAtEnd() && isNameCharacter(current()))
            ++myPosition;
        const bool isElement = start == myElementStart;
        if (isElement && current() == u':') { // a prefix: the element's name follows
            myElementStart = myPosition + 1;
            return;
        }
        const QStringView name = QStringView(myText).sliced(start, myPosition - start);
        if (!isSecret(name))
            return;
        if (isElement)
            hideElement(name);
        else
            hideValue(name, at(start - 1));
    }

    // "Proxy-Authorization" and "form.password" are secret too.
    [[nodiscard]] bool isSecret(QStringView theName) const
    {
        if (theName.size() > longestName)
            return false;
        const QString name = theName.toString().toLower();
        const qsizetype separator = qMax(name.lastIndexOf(u'-'), name.lastIndexOf(u'.'));
        return myNames.contains(name) || myNames.contains(name.sliced(separator + 1));
    }

    void hideElement(QStringView theName)
    {
        const qsizetype tag = myPosition;
        if (!skipTag()) { // broken: the value may stand in what looks like the tag
            replace(tag);
            return;
        }
        if (at(myPosition - 2) == u'/') // <name/>
            return;
        const qsizetype start = myPosition;
        while (!isAtEnd() && !isEndTag(theName))
            ++myPosition;
        replace(start);
    }

    // To behind the ">" of the tag; one inside quotation marks does not count. False at the end.
    bool skipTag()
    {
        QChar quote;
        for (; !isAtEnd(); ++myPosition) {
            const QChar character = current();
            if (!quote.isNull())
                quote = character == quote ? QChar() : quote;
            else if (character == u'"' || character == u'\'')
                quote = character;
            else if (character == u'>') {
                ++myPosition;
                return true;
            }
        }
        return false;
    }

    [[nodiscard]] bool isEndTag(QStringView theName) const
    {
        if (current() != u'<' || at(myPosition + 1) != u'/')
            return false;
        const QStringView rest = QStringView(myText).sliced(myPosition + 2);
        if (rest.startsWith(theName))
            return true;
        const qsizetype colon = rest.first(qMin(rest.size(), longestName)).indexOf(u':');
        return colon >= 0 && rest.sliced(colon + 1).startsWith(theName);
    }

    void hideValue(QStringView theName, QChar theBefore)
    {
        const bool isEscaped = theBefore == u'"' && isEscapedMark();
        const bool isQuotedName = isEscaped || (theBefore == u'"' && current() == u'"');
        const qsizetype mark = isEscaped ? 2 : (isQuotedName ? 1 : 0);
        const qsizetype position = skipBlanks(myPosition + mark);
        const QChar separator = at(position);
        const bool isHeader = theName.endsWith("authorization"_L1, Qt::CaseInsensitive);
        if (separator != u'=' && !(separator == u':' && (isQuotedName || isHeader)))
            return;

        myPosition = skipBlanks(position + 1);
        if (isEscapedMark())
            hideEscapedText();
        else if (current() == u'"' || current() == u'\'')
            hideQuoted();
        else if (isEscaped)
            hideEscapedJson();
        else if (isQuotedName)
            hideJson();
        else
            hideUntil(separator == u':' ? u"\r\n"_s : u"&\"<\r\n"_s);
    }

    [[nodiscard]] qsizetype skipBlanks(qsizetype thePosition) const
    {
        // A long run of blanks is no way to write a value; the limit keeps the effort linear.
        for (int count = 0; count < longestName && at(thePosition).isSpace(); ++count)
            ++thePosition;
        return thePosition;
    }

    // A quotation mark inside a text in quotation marks, such as Qt's debug output has.
    [[nodiscard]] bool isEscapedMark() const
    {
        return current() == u'\\' && at(myPosition + 1) == u'"';
    }

    // As hideJson() there, but an array and all behind it: its end is hard to tell.
    void hideEscapedJson()
    {
        const qsizetype start = myPosition;
        if (current() == u'[') {
            skipQuoted(u'"');
            replace(start);
        } else if (current() != u'{') {
            hideUntil(u",}] \t\r\n\"\\"_s);
        }
    }

    // To the next such mark, the end of the text around it, or the end.
    void hideEscapedText()
    {
        myPosition += 2;
        const qsizetype start = myPosition;
        while (!isAtEnd() && current() != u'"' && !isEscapedMark()) {
            if (current() == u'\\' && at(myPosition + 1) == u'\\')
                myPosition += 2; // the inner text's own backslash, which takes the next along
            myPosition += current() == u'\\' ? 2 : 1;
        }
        myPosition = qMin(myPosition, myText.size());
        replace(start);
    }

    void hideQuoted()
    {
        const QChar quote = current();
        const qsizetype start = ++myPosition;
        skipQuoted(quote);
        replace(start);
    }

    // To the closing quotation mark, or the end.
    void skipQuoted(QChar theQuote)
    {
        while (!isAtEnd() && current() != theQuote)
            myPosition += current() == u'\\' ? 2 : 1;
        myPosition = qMin(myPosition, myText.size());
    }

    // A number, a word or an array; of an object the members are looked at one by one.
    void hideJson()
    {
        if (current() == u'[')
            hideArray();
        else if (current() != u'{')
            hideUntil(u",}] \t\r\n"_s);
    }

    void hideArray()
    {
        const qsizetype start = ++myPosition;
        for (int depth = 1; !isAtEnd(); ++myPosition) {
            const QChar character = current();
            if (character == u'"') {
                ++myPosition;
                skipQuoted(u'"');
            } else if (character == u'[') {
                ++depth;
            } else if (character == u']' && --depth == 0) {
                break;
            }
        }
        myPosition = qMin(myPosition, myText.size());
        replace(start);
    }

    void hideUntil(const QString& theEnds)
    {
        const qsizetype start = myPosition;
        while (!isAtEnd() && !theEnds.contains(current()))
            ++myPosition;
        replace(start);
    }

    // What lies between theStart and the position becomes the mask; nothing stays nothing.
    void replace(qsizetype theStart)
    {
        if (theStart == myPosition)
            return;
        myResult += QStringView(myText).sliced(myCopied, theStart - myCopied);
        myResult += mask;
        myCopied = myPosition;
    }

    const QString myText;
    const QSet<QString> myNames; // in lower case
    QString myResult;
    qsizetype myPosition = 0;
    qsizetype myCopied = 0;        // so much of the text is in the result
    qsizetype myElementStart = -1; // where the name of an element begins
};

} // namespace

QString VXStringHelper::hidePasswords(const QString& theText)
{
    return Masker(theText).run();
}
