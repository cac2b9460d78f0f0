#pragma once

#include "VXNetworkingExport.h"

#include <QtCore/QHash>
#include <QtCore/QObject>
#include <QtCore/QSizeF>
#include <QtCore/QString>
#include <QtCore/QUrl>
#include <QtCore/QVariant>

#include <functional>

class QWidget;
class VXAbstractCommunication;

/// An embedded browser: what dialogs need of it, without naming the engine.
///
/// The object has no QObject parent, who creates it deletes it; its widget belongs to the widget
/// tree. When the widget dies first, every operation does nothing and returns an empty value.
/// GUI thread only, but for runJavascriptSync().
class VXNETWORKING_EXPORT VXWebView : public QObject
{
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(VXWebView)

public:
    /// theParentWidget is only remembered; it does not become the parent of this object.
    explicit VXWebView(QWidget* theParentWidget);
    ~VXWebView() override;

    /// A view whose widget is a child of theParent. With injectCustom each page gets the scripts of
    /// injectCustomHtml() after it was loaded, successfully or not. The caller owns the view.
    [[nodiscard]] static VXWebView* createWebView(QWidget* theParent, bool injectCustom);

    /// The widget that shows the page; null after it died.
    [[nodiscard]] virtual QWidget* nativeWidget() = 0;

    /// A hook for views whose widget may be replaced; does nothing here.
    virtual void updateNativeWidget(QWidget* theWidget);

    /// Begins to load theUrl and returns at once; the signals tell how it goes.
    virtual void setUrl(const QUrl& theUrl) = 0;

    /// Runs theScript; its result arrives later and is stored under the script's text in
    /// theResults, which must live until then.
    virtual void runJavaScript(const QString& theScript, QHash<QString, QVariant>* theResults) = 0;

    /// The same with a callback, which may be empty; it is called in the view's thread.
    virtual void runJavascriptAsync(const QString& theScript,
                                    std::function<void(QVariant)> theCallback) = 0;

    /// Whether the application answers requests of theScheme itself, as it does for "tov".
    [[nodiscard]] virtual bool handlesURLScheme(const QString& theScheme) const = 0;

    /// Shows theHtml, which has no base address: relative links lead nowhere.
    virtual void setHtml(const QString& theHtml) = 0;

    /// The title of the page; empty before one was shown.
    [[nodiscard]] virtual QString title() const = 0;

    /// The address of the page, after redirects.
    [[nodiscard]] virtual QUrl url() const = 0;

    /// Breaks loading off; what was loaded stays.
    virtual void stop() const = 0;

    /// As the engine reports it: empty before a page was shown, and in pixels of the screen, which
    /// on a dense screen (Qt 6.4) are more than those of widgets.
    [[nodiscard]] virtual QSizeF contentsSize() const = 0;

    /// A channel to talk with the page, which the caller owns.
    [[nodiscard]] virtual VXAbstractCommunication* createCommunication(const QString& theName);

    /// The cookies of all views: they share one store. Returns at once.
    virtual void deleteAllCookies() = 0;

    /// Runs theScript and waits for its result. In the view's thread a local event loop runs
    /// meanwhile, so be prepared for re-entry; any other thread sleeps until the view's thread has
    /// delivered it. There is no time limit. Invalid for a script without a result.
    [[nodiscard]] QVariant runJavascriptSync(const QString& theScript);

    /// As given to the constructor. Not watched: it dangles when that widget has died.
    [[nodiscard]] QWidget* parentWidget() const { return myParentWidget; }

Q_SIGNALS:
    /// A page begins to load.
    void loadStarted();

    /// ok is false when the page could not be loaded, or loading was stopped.
    void loadFinished(bool ok);

    /// A script of the page wants its window closed.
    void windowCloseRequested();

    /// Also while the page is shown, by a script.
    void titleChanged(const QString& theTitle);

    /// Per cent, 0 to 100.
    void loadProgress(int theProgress);

    /// A link, a redirect or a script went on to theUrl.
    void urlChanged(const QUrl& theUrl);

    /// In the unit of contentsSize().
    void contentsSizeChanged(const QSizeF& theSize);

public Q_SLOTS:
    /// Loads the page again and returns at once.
    virtual void reload() const = 0;

    /// Shows the print dialog and prints in the background.
    virtual void printContent() = 0;

    /// Writes the page as PDF (A4, portrait, margins of 20 points); an empty name does nothing.
    virtual void saveContent(const QString& theFileName) = 0;

    /// Adapts a local page: dark colours in the dark skin, and links to the web and to mail
    /// addresses open outside.
    void injectCustomHtml();

private:
    QWidget* myParentWidget = nullptr;
};
