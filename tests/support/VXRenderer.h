#pragma once

#include "VXWebTest.h"

#include <QtWebEngineWidgets/QWebEngineView>

#include <csignal>

/// The process of the web engine that renders a test's page.
class VXRenderer
{
public:
    VXRenderer() = delete;

    [[nodiscard]] static QWebEngineView* engineOf(const VXWebTest::Page& thePage)
    {
        return qobject_cast<QWebEngineView*>(thePage.view->nativeWidget());
    }

    /// Ends the process from outside and waits until the engine has seen it.
    [[nodiscard]] static bool kill(const VXWebTest::Page& thePage, int theSignal = SIGKILL)
    {
        return kill(engineOf(thePage), theSignal);
    }

    [[nodiscard]] static bool kill(const QWebEngineView* theView, int theSignal = SIGKILL)
    {
        const QSignalSpy terminated(theView, &QWebEngineView::renderProcessTerminated);
        const auto process = static_cast<pid_t>(theView->page()->renderProcessPid());
        return process > 0 && ::kill(process, theSignal) == 0 &&
               QTest::qWaitFor([&] { return terminated.count() == 1; }, 20000);
    }
};
