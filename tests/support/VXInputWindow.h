#pragma once

#include <QtCore/QString>
#include <QtGui/QKeyEvent>
#include <QtGui/QWindow>
#include <QtTest/QTest>

/// Qt's entry for events of the window system. The symbols are exported, their header is private;
/// QTest's clicks are delivered in spite of a wait that holds input back, these are not.
class Q_GUI_EXPORT QWindowSystemInterface
{
public:
    struct AsynchronousDelivery
    {
    };
    template <typename Delivery>
    static bool
    handleMouseEvent(QWindow* theWindow, const QPointF& theLocal, const QPointF& theGlobal,
                     Qt::MouseButtons theState, Qt::MouseButton theButton, QEvent::Type theType,
                     Qt::KeyboardModifiers theModifiers, Qt::MouseEventSource theSource);
    template <typename Delivery>
    static bool handleKeyEvent(QWindow* theWindow, QEvent::Type theType, int theKey,
                               Qt::KeyboardModifiers theModifiers, const QString& theText,
                               bool theIsRepeated, unsigned short theCount);
};

/// A window that counts the keys and clicks that reach it.
class VXInputWindow : public QWindow
{
public:
    /// Shows the window; true when it gets the input.
    bool open()
    {
        resize(100, 100);
        show();
        if (!QTest::qWaitForWindowExposed(this))
            return false;
        requestActivate();
        return QTest::qWaitForWindowActive(this);
    }

    /// One key and one click of the user, as the window system tells them.
    void sendInput()
    {
        using Delivery = QWindowSystemInterface::AsynchronousDelivery;
        QWindowSystemInterface::handleKeyEvent<Delivery>(
            this, QEvent::KeyPress, Qt::Key_A, Qt::NoModifier, QStringLiteral("a"), false, 1);
        QWindowSystemInterface::handleMouseEvent<Delivery>(
            this, QPointF(5, 5), QPointF(5, 5), Qt::LeftButton, Qt::LeftButton,
            QEvent::MouseButtonPress, Qt::NoModifier, Qt::MouseEventNotSynthesized);
    }

    int keys = 0;
    int clicks = 0;

protected:
    void keyPressEvent(QKeyEvent*) override { ++keys; }
    void mousePressEvent(QMouseEvent*) override { ++clicks; }
};
