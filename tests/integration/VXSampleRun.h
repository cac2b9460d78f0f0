#pragma once

#include <QtCore/QJsonObject>
#include <QtCore/QList>
#include <QtCore/QStringList>

/// One run of the sample host as a black box: arguments in, JSON lines and exit status out.
class VXSampleRun
{
public:
    /// Runs the program to its end, with `theInput` on its standard input.
    explicit VXSampleRun(const QStringList& theArguments, const QByteArray& theInput = {});

    /// -1 when the program crashed or did not end in time.
    [[nodiscard]] int exitCode() const { return myExitCode; }

    /// The last line of standard output; empty when that is no JSON object.
    [[nodiscard]] QJsonObject result() const;

    /// The lines before the last one whose key "event" is `theName`.
    [[nodiscard]] QList<QJsonObject> events(const QString& theName) const;

    [[nodiscard]] QByteArray standardOutput() const { return myOutput; }
    [[nodiscard]] QString standardError() const { return myErrors; }

    /// True when every line of standard output is a JSON object.
    [[nodiscard]] bool isJson() const { return myIsJson; }

private:
    int myExitCode = -1;
    bool myIsJson = true;
    QByteArray myOutput;
    QString myErrors;
    QList<QJsonObject> myLines;
};
