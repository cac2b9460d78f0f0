#pragma once

#include "VXWebView.h"

#include <QtCore/QList>
#include <QtCore/QPointer>
#include <QtWebEngineCore/QWebEnginePage>

#include <memory>

class QWebEngineView;
class VXQWebPage;

/// The web view on Qt WebEngine, with a page of the default profile.
///
/// The engine's widget is a child of the parent widget and may die with it; without a parent it
/// dies with this object. A render process that ended in another way than by itself is recorded
/// with VXCrashDetector for the next start of the program; the page is not loaded again.
/// GUI thread only.
class VXNETWORKING_EXPORT VXQWebEngineWebView : public VXWebView
{
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(VXQWebEngineWebView)

public:
    /// The widget is made a child of theParentWidget at once; null makes it a window of its own.
    explicit VXQWebEngineWebView(QWidget* theParentWidget);
    ~VXQWebEngineWebView() override;

    /// Whether the engine of this process was started with graphics acceleration. The library's
    /// start-up sets it.
    static bool haveGpuEnabled;

    [[nodiscard]] QWidget* nativeWidget() override;
    void setUrl(const QUrl& theUrl) override;
    void runJavaScript(const QString& theScript, QHash<QString, QVariant>* theResults) override;

    /// theCallback gets an invalid value at once when there is no widget or no render process, and
    /// when that process ends before it has answered.
    void runJavascriptAsync(const QString& theScript,
                            std::function<void(QVariant)> theCallback) override;
    [[nodiscard]] bool handlesURLScheme(const QString& theScheme) const override;
    void setHtml(const QString& theHtml) override;
    [[nodiscard]] QString title() const override;
    [[nodiscard]] QUrl url() const override;
    void stop() const override;
    [[nodiscard]] QSizeF contentsSize() const override;
    void deleteAllCookies() override;
    void reload() const override;

    /// Both do nothing when the render process is gone. The window may be closed at once: the page
    /// stays until it is printed.
    void printContent() override;
    void saveContent(const QString& theFileName) override;

private:
    using Callback = std::function<void(QVariant)>;

    [[nodiscard]] VXQWebPage* printablePage() const;
    void forwardSignals();
    void recordTermination(QWebEnginePage::RenderProcessTerminationStatus theStatus);
    void answerPendingScripts();

    QPointer<QWebEngineView> myView;                   // the widget tree's
    bool myHasRenderProcess = true;                    // false from its end to the next load
    QList<std::weak_ptr<Callback>> myPendingCallbacks; // of runJavascriptAsync(), the engine's
};
