#pragma once

#include <QtCore/QObject>

class VXSampleOutput;

/// Prints the progress of a transfer as events. Its notices are queued, so they may still come
/// when the exchange has ended; takeOutstanding() waits for them.
class VXSampleProgress : public QObject
{
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(VXSampleProgress)

public:
    /// `theOutput` must outlive this object; null: nothing is printed, only counted.
    explicit VXSampleProgress(VXSampleOutput* theOutput);
    ~VXSampleProgress() override;

    /// The slot as VXHttpOperation::setProgressReceiver() wants it.
    [[nodiscard]] static const char* slot();

    /// Handles the notices that were posted already.
    void takeOutstanding();

    [[nodiscard]] int notices() const { return myNotices; }
    /// The most bytes that a notice named.
    [[nodiscard]] qint64 mostDone() const { return myMostDone; }

    /// Bytes; `theTotal` is -1 while it is unknown.
    Q_SLOT void progress(qint64 theDone, qint64 theTotal);

private:
    VXSampleOutput* myOutput;
    int myNotices = 0;
    qint64 myMostDone = 0;
};
