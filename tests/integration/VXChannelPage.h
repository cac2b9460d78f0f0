#pragma once

#include <QtCore/QStringList>
#include <QtCore/QUrlQuery>
#include <QtCore/QVariant>
#include <QtWebEngineCore/QWebEnginePage>

/// A real page of the web engine that keeps its console and answers scripts.
///
/// Call prepare() before the application object is made.
class VXChannelPage : public QWebEnginePage
{
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(VXChannelPage)

public:
    explicit VXChannelPage(QWebEngineProfile* theProfile = nullptr);

    /// Lets the engine run without its sandbox, which needs rights that a test may lack, and gives
    /// each test function a limit of its own.
    static bool prepare();

    /// What the page wrote to its console, oldest first.
    [[nodiscard]] QStringList console() const { return myConsole; }

    /// The result of theScript; "no answer" when the engine gave none.
    [[nodiscard]] QVariant eval(const QString& theScript);

    /// Loads theUrl; true when that succeeded.
    [[nodiscard]] bool open(const QUrl& theUrl);

    /// Shows theHtml as a data page; true when that succeeded.
    [[nodiscard]] bool openHtml(const QString& theHtml);

    /// The page of the tests with theQuery: from resources, or as text for openHtml().
    [[nodiscard]] static QUrl orderUrl(const QUrlQuery& theQuery);
    [[nodiscard]] static QString orderHtml(const QUrlQuery& theQuery);

protected:
    void javaScriptConsoleMessage(JavaScriptConsoleMessageLevel theLevel, const QString& theMessage,
                                  int theLine, const QString& theSource) override;

private:
    QStringList myConsole;
};
