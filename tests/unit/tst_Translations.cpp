#include "VXTestMain.h"

#include <QtCore/QCoreApplication>
#include <QtCore/QDir>
#include <QtCore/QDirIterator>
#include <QtCore/QFile>
#include <QtCore/QRegularExpression>
#include <QtCore/QSet>
#include <QtCore/QTranslator>
#include <QtCore/QXmlStreamReader>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

struct Message
{
    QString context;
    QString comment; ///< the disambiguation
    QString source;
    QString translation;
    bool isFinished = false;
};

const QString sourceFolder = QStringLiteral(VX_SOURCE_DIR);
const QString catalogueFile = sourceFolder + u"/i18n/VXNetworking_en.ts"_s;

Message readMessage(QXmlStreamReader& theReader, const QString& theContext)
{
    Message message;
    message.context = theContext;
    while (theReader.readNextStartElement()) {
        const QStringView name = theReader.name();
        if (name == u"translation")
            message.isFinished = !theReader.attributes().hasAttribute(u"type"_s);
        QString& text = name == u"source"    ? message.source
                        : name == u"comment" ? message.comment
                                             : message.translation;
        text = theReader.readElementText();
    }
    return message;
}

QList<Message> readContext(QXmlStreamReader& theReader)
{
    QList<Message> messages;
    QString context;
    while (theReader.readNextStartElement()) {
        if (theReader.name() == u"name")
            context = theReader.readElementText();
        else
            messages << readMessage(theReader, context);
    }
    return messages;
}

QList<Message> readCatalogue()
{
    QFile file(catalogueFile);
    if (!file.open(QIODevice::ReadOnly))
        return {};
    QXmlStreamReader reader(&file);
    QList<Message> messages;
    reader.readNextStartElement();
    while (reader.readNextStartElement())
        messages << readContext(reader);
    return reader.hasError() ? QList<Message>() : messages;
}

/// Placeholders and tags, sorted: what a translation must not lose.
QStringList marks(const QString& theText)
{
    static const QRegularExpression mark(u"%\\d|</?[a-z]+[^>]*>"_s);
    QStringList found;
    for (const QRegularExpressionMatch& match : mark.globalMatch(theText))
        found << match.captured();
    found.sort();
    return found;
}

/// The letter that Alt makes a shortcut, small; null without one. "&uuml;" is none.
QChar mnemonic(const QString& theText)
{
    static const QRegularExpression letter(u"&(\\w)(?!\\w*;)"_s,
                                           QRegularExpression::UseUnicodePropertiesOption);
    const QString found = letter.match(theText).captured(1);
    return found.isEmpty() ? QChar() : found.at(0).toLower();
}

/// The letters that stand in theLetters more than once.
QString repeated(const QString& theLetters)
{
    QString found;
    for (const QChar letter : theLetters) {
        if (theLetters.count(letter) > 1)
            found += letter;
    }
    return found;
}

QString firstWords(const QString& theText)
{
    return theText.left(60).simplified();
}

} // namespace

/// The English catalogue and the texts that every catalogue must know.
class tst_Translations : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();

    void everyTextOfTheLibraryIsInTheCatalogue_data();
    void everyTextOfTheLibraryIsInTheCatalogue();
    void everyTextOfTheCatalogueIsFinished();
    void contextsAreClasses();
    void placeholdersAndTagsSurvive();
    void blanksAndLinesAtTheEndsSurvive();
    void noGermanLetterIsLeft();
    void mnemonicsSurvive();
    void mnemonicsOfAPageDoNotClash_data();
    void mnemonicsOfAPageDoNotClash();
    void releasedCatalogueAnswersWithContextAndDisambiguation();

private:
    QList<Message> myMessages;
};

void tst_Translations::initTestCase()
{
    myMessages = readCatalogue();
    QVERIFY2(myMessages.size() > 200, qPrintable(catalogueFile));
}

void tst_Translations::everyTextOfTheLibraryIsInTheCatalogue_data()
{
    QTest::addColumn<QString>("context");
    QTest::addColumn<QString>("comment");
    QTest::addColumn<QString>("source");

    QFile table(sourceFolder + u"/tests/data/texts.tsv"_s);
    QVERIFY(table.open(QIODevice::ReadOnly));
    for (QString line; !(line = QString::fromUtf8(table.readLine())).isEmpty();) {
        if (line.startsWith(u'#'))
            continue;
        line.chop(1);
        const QStringList fields = line.split(u'\t');
        QCOMPARE(fields.size(), 3);
        const QString source = QString(fields.at(2)).replace("\\n"_L1, "\n"_L1);
        QTest::addRow("%s: %s", qPrintable(fields.at(0)), qPrintable(firstWords(source)))
            << fields.at(0) << fields.at(1) << source;
    }
}

void tst_Translations::everyTextOfTheLibraryIsInTheCatalogue()
{
    QFETCH(QString, context);
    QFETCH(QString, comment);
    QFETCH(QString, source);

    const auto found =
        std::count_if(myMessages.begin(), myMessages.end(), [&](const Message& theMessage) {
            return theMessage.context == context && theMessage.comment == comment &&
                   theMessage.source == source;
        });
    QCOMPARE(found, 1);
}

void tst_Translations::everyTextOfTheCatalogueIsFinished()
{
    for (const Message& message : myMessages)
        QVERIFY2(message.isFinished && !message.translation.isEmpty(), qPrintable(message.source));
}

void tst_Translations::contextsAreClasses()
{
    QSet<QString> classes;
    for (QDirIterator file(sourceFolder, {u"VX*.h"_s}, QDir::Files, QDirIterator::Subdirectories);
         file.hasNext();) {
        const QString path = file.next();
        if (path.contains("/libs/"_L1) || path.contains("/apps/"_L1))
            classes << file.fileInfo().completeBaseName();
    }
    for (const Message& message : myMessages)
        QVERIFY2(classes.contains(message.context), qPrintable(message.context));
}

void tst_Translations::placeholdersAndTagsSurvive()
{
    for (const Message& message : myMessages)
        QCOMPARE(marks(message.translation), marks(message.source));
}

// Callers put texts one behind the other, and titles end with a blank on purpose.
void tst_Translations::blanksAndLinesAtTheEndsSurvive()
{
    for (const Message& message : myMessages) {
        const QString& source = message.source;
        const QString& translation = message.translation;
        QCOMPARE(translation.endsWith(u' '), source.endsWith(u' '));
        QCOMPARE(translation.startsWith(u' '), source.startsWith(u' '));
        QCOMPARE(translation.count(u'\n'), source.count(u'\n'));
    }
}

void tst_Translations::noGermanLetterIsLeft()
{
    static const QRegularExpression german(u"[äöüÄÖÜß]|&[aouAOU]uml;|\\b(und|der|die|nicht)\\b"_s);
    for (const Message& message : myMessages)
        QVERIFY2(!message.translation.contains(german), qPrintable(message.translation));
}

void tst_Translations::mnemonicsSurvive()
{
    for (const Message& message : myMessages)
        QVERIFY2(mnemonic(message.translation).isNull() == mnemonic(message.source).isNull(),
                 qPrintable(message.translation));
}

void tst_Translations::mnemonicsOfAPageDoNotClash_data()
{
    QTest::addColumn<QString>("context");
    QTest::addColumn<QStringList>("menus"); // German; the menus of the page's window
    const QStringList none;
    const QStringList menus{u"&Programm"_s, u"&Netzwerkprobleme"_s,
                            u"&Anmeldung und Aktualisierung"_s, u"&Einstellungen"_s};
    QTest::newRow("password dialog") << u"VXPasswordDialog"_s << none;
    QTest::newRow("requests") << u"VXSampleHttpPanel"_s << menus;
    QTest::newRow("orders") << u"VXSampleOrderPanel"_s << menus;
    QTest::newRow("problems") << u"VXSampleProblemPanel"_s << menus;
    QTest::newRow("login") << u"VXSampleLoginPanel"_s << menus;
    QTest::newRow("web content") << u"VXSampleWebPanel"_s << menus;
    QTest::newRow("upload") << u"VXSampleUploadPanel"_s << menus;
}

// Two texts with one letter: Alt and the letter would reach only one of them, or none.
void tst_Translations::mnemonicsOfAPageDoNotClash()
{
    QFETCH(QString, context);
    QFETCH(QStringList, menus);
    QString german;
    QString english;
    for (const Message& message : myMessages) {
        const bool isMenu =
            message.context == u"VXSampleMainWindow" && menus.contains(message.source);
        if ((!isMenu && message.context != context) || mnemonic(message.source).isNull())
            continue;
        german += mnemonic(message.source);
        english += mnemonic(message.translation);
    }
    QVERIFY(german.size() > menus.size()); // the page's own are among them
    QCOMPARE(repeated(german), QString());
    QCOMPARE(repeated(english), QString());
}

void tst_Translations::releasedCatalogueAnswersWithContextAndDisambiguation()
{
    QTranslator catalogue;
    QVERIFY2(catalogue.load(QStringLiteral(VX_BINARY_DIR) +
                            u"/share/VXNetworking/translations/VXNetworking_en.qm"_s),
             "the build has released no catalogue: qt6-tools-dev, qt6-l10n-tools");
    QCOMPARE(catalogue.translate("VXRequestNetwork", "Noch einmal versuchen", "CMDLNKTITLE"),
             u"Try again"_s);
    QCOMPARE(catalogue.translate("VXRequestNetwork", "Führt die Aktion noch einmal durch",
                                 "CMDLINKTEXT"),
             u"Carries out the action again"_s);
    QCOMPARE(catalogue.translate("VXPreferencesProxy", "Eigenen Proxy benutzen", "RADIOBUTTON"),
             u"Use a custom proxy"_s);
    QCOMPARE(catalogue.translate("VXNetworkingErrorMessageMap", "Die Datei ist leer."),
             u"The file is empty."_s);
}

VX_TEST_MAIN(QCoreApplication, tst_Translations)

#include "tst_Translations.moc"
