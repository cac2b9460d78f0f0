#include "VXLogFile.h"

#include <QtCore/QDir>
#include <QtCore/QFileInfo>

#include <algorithm>
#include <cstdio>
#include <utility>

using namespace Qt::StringLiterals;

namespace {

constexpr int keptFiles = 3;
constexpr QFile::Permissions ownerOnly = QFile::ReadOwner | QFile::WriteOwner;

/// A control character but the tab; the separators count as line ends in many viewers.
bool needsEscape(QChar theChar)
{
    const char16_t code = theChar.unicode();
    return (code < 0x20 && code != u'\t') || (code >= 0x7f && code < 0xa0) || code == 0x2028 ||
           code == 0x2029;
}

} // namespace

VXLogFile::VXLogFile(const QString& theFile, qint64 theMaximumSize)
    : myFile(theFile)
    , myMaximumSize(theMaximumSize)
{
}

QString VXLogFile::escaped(const QString& theText)
{
    if (std::ranges::none_of(theText, needsEscape))
        return theText;
    QString result;
    result.reserve(theText.size());
    for (const QChar character : theText) {
        if (needsEscape(character))
            result += u"\\x%1"_s.arg(static_cast<uint>(character.unicode()), 2, 16, QChar(u'0'));
        else
            result += character;
    }
    return result;
}

void VXLogFile::append(const QString& theLine, bool theIsFlushed)
{
    const QByteArray bytes = theLine.toUtf8() + '\n';
    if (!open() || myFile.write(bytes) != bytes.size() || (theIsFlushed && !myFile.flush())) {
        reportFailure();
        return;
    }
    if (myFile.size() >= myMaximumSize)
        rotate();
}

bool VXLogFile::open()
{
    if (myFile.isOpen())
        return true;
    QDir().mkpath(QFileInfo(myFile.fileName()).absolutePath());
    return myFile.open(QFile::WriteOnly | QFile::Append, ownerOnly);
}

void VXLogFile::rotate()
{
    // What is no regular file (a terminal, a pipe) has no size to keep small.
    if (!QFileInfo(myFile.fileName()).isFile())
        return;
    myFile.close();
    const QString name = myFile.fileName() + u'.';
    QFile::remove(name + QString::number(keptFiles));
    for (int number = keptFiles; number > 1; --number)
        QFile::rename(name + QString::number(number - 1), name + QString::number(number));
    QFile::rename(myFile.fileName(), name + u'1');
}

void VXLogFile::reportFailure()
{
    // Closing drops what could not be written, so that the next line gets its own chance.
    const QByteArray text =
        u"%1: the log cannot be written: %2"_s.arg(myFile.fileName(), myFile.errorString())
            .toLocal8Bit();
    myFile.close();
    if (!std::exchange(myHasFailed, true))
        std::fprintf(stderr, "%s\n", text.constData()); // the log is no place to tell it
}
