#pragma once

#include <QtCore/QList>
#include <QtCore/QMutex>
#include <QtCore/QString>
#include <QtCore/QStringList>

/// Collects what goes through Qt's message handler while this object lives, from every thread.
///
/// Captures nest: the innermost one collects. Each message also goes on to the handler that was
/// installed before, so a failing test still shows its log.
class VXLogCapture
{
    Q_DISABLE_COPY_MOVE(VXLogCapture)

public:
    struct Line
    {
        QtMsgType type;
        QString text;
    };

    VXLogCapture();
    ~VXLogCapture();

    /// Every message in the order of arrival.
    [[nodiscard]] QList<Line> lines() const;
    /// The texts of every message.
    [[nodiscard]] QStringList texts() const;
    /// The texts of the messages of one level.
    [[nodiscard]] QStringList texts(QtMsgType theType) const;
    /// The texts that contain a fragment (case-sensitive).
    [[nodiscard]] QStringList textsWith(const QString& theFragment) const;
    void clear();

private:
    static void handle(QtMsgType theType, const QMessageLogContext& theContext,
                       const QString& theText);

    static QMutex ourMutex;          // guards ourCurrent and myLines of every capture
    static VXLogCapture* ourCurrent; // innermost capture
    QList<Line> myLines;
    VXLogCapture* myOuter = nullptr;
    QtMessageHandler myPrevious = nullptr;
};
