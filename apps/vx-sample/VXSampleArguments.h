#pragma once

#include <QtCore/QByteArray>
#include <QtCore/QString>
#include <QtNetwork/QNetworkAccessManager>

#include <optional>

class QCommandLineParser;

/// What several commands read from their arguments. A value that cannot be read is described by
/// an error text, which is empty otherwise.
class VXSampleArguments
{
public:
    /// HEAD, GET, PUT, POST or DELETE, in any case.
    static std::optional<QNetworkAccessManager::Operation> operation(const QString& theName);

    /// Declares "--timeout SECONDS"; `theDefault` in seconds.
    static void addTimeout(QCommandLineParser& theParser, int theDefault);

    /// An option's number from `theLeast` to `theMost`.
    static std::optional<int> number(const QCommandLineParser& theParser, const QString& theName,
                                     int theLeast, int theMost, QString* theErrorText);

    /// The next line of standard input without its end, as UTF-8.
    static QString lineFromStandardInput();

    /// The option's text as UTF-8, or the content of a file for "@FILE".
    static QByteArray textOrFile(const QString& theValue, QString* theErrorText);
};
