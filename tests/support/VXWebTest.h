#pragma once

#include <VXNetworking/VXWebView.h>

#include <QtTest/QSignalSpy>
#include <QtTest/QTest>
#include <QtWidgets/QWidget>

#include <memory>

// For tests with the web engine. Including it prepares the process before the application object is
// made: the engine's sandbox needs rights that a test may lack, and each test function has a limit
// of its own.
namespace VXWebTest {

inline const bool isPrepared =
    qputenv("QTWEBENGINE_CHROMIUM_FLAGS", "--no-sandbox --disable-gpu") &&
    (qEnvironmentVariableIsSet("QTEST_FUNCTION_TIMEOUT") ||
     qputenv("QTEST_FUNCTION_TIMEOUT", "100000")); // milliseconds

/// A view in a window of its own.
struct Page
{
    std::unique_ptr<QWidget> window = std::make_unique<QWidget>();
    std::unique_ptr<VXWebView> view{VXWebView::createWebView(window.get(), false)};

    /// Shows theHtml; false when the engine does not manage.
    [[nodiscard]] bool load(const QString& theHtml)
    {
        QSignalSpy finished(view.get(), &VXWebView::loadFinished);
        view->setHtml(theHtml);
        return finished.wait(20000) && finished.constFirst().constFirst().toBool();
    }
};

} // namespace VXWebTest
