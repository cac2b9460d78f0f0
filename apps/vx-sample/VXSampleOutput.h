#pragma once

#include <QtCore/QJsonObject>
#include <QtCore/QMutex>
#include <QtCore/QString>

/// What the program says: one JSON object per line on standard output for programs, plain text on
/// standard error for people. All operations may be called from any thread; lines never mix.
class VXSampleOutput
{
    Q_DISABLE_COPY_MOVE(VXSampleOutput)

public:
    VXSampleOutput() = default;

    /// Writes `theFields` with the additional key "event".
    void event(const QString& theName, QJsonObject theFields);

    /// Writes the result of the command: its last line on standard output.
    void result(const QJsonObject& theResult);

    /// The last result that was written, empty when there is none since forgetResult().
    [[nodiscard]] QJsonObject lastResult() const;
    void forgetResult();

    /// Writes text for people, with a line feed at its end.
    void message(const QString& theText);

    /// Writes text that the user asked for (help, version) to standard output.
    void text(const QString& theText);

private:
    void write(const QJsonObject& theLine);

    mutable QMutex myMutex; // guards both streams and the last result
    QJsonObject myLastResult;
};
