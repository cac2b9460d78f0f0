#pragma once

#include <QtCore/QList>
#include <QtCore/QObject>
#include <QtCore/QThread>

#include <utility>

/// Receives the progress of an exchange and remembers it.
class VXProgressRecorder : public QObject
{
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(VXProgressRecorder)

public:
    using QObject::QObject;

    /// Done and total bytes of each notice.
    [[nodiscard]] QList<std::pair<qint64, qint64>> notices() const { return myNotices; }
    /// False when a notice came in a thread that this object does not live in.
    [[nodiscard]] bool wasCalledInOwnThread() const { return myWasCalledInOwnThread; }

public Q_SLOTS:
    void note(qint64 theDone, qint64 theTotal)
    {
        myNotices << std::pair(theDone, theTotal);
        myWasCalledInOwnThread = myWasCalledInOwnThread && QThread::currentThread() == thread();
        Q_EMIT progressed(theDone);
    }

Q_SIGNALS:
    void progressed(qint64 theDone);

private:
    QList<std::pair<qint64, qint64>> myNotices;
    bool myWasCalledInOwnThread = true;
};
