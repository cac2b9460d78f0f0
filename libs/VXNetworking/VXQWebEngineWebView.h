#pragma once

#include "VXWebView.h"

#include <QtCore/QPointer>
#include <QtWebEngineCore/QWebEnginePage>

class QWebEngineView;

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
    explicit VXQWebEngineWebView(QWidget* theParentWidget);
    ~VXQWebEngineWebView() override;

    /// Whether the engine of this process was started with graphics acceleration. The library's
    /// start-up sets it.
    static bool haveGpuEnabled;

    [[nodiscard]] QWidget* nativeWidget() override;
    void setUrl(const QUrl& theUrl) override;
    void runJavaScript(const QString& theScript, QHash<QString, QVariant>* theResults) override;

    /// Without a widget theCallback gets an invalid value at once.
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
    void printContent() override;
    void saveContent(const QString& theFileName) override;

private:
    void forwardSignals();
    void recordTermination(QWebEnginePage::RenderProcessTerminationStatus theStatus);

    QPointer<QWebEngineView> myView; // the widget tree's
};
