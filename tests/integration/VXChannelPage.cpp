#include "VXChannelPage.h"

#include <QtCore/QFile>
#include <QtTest/QSignalSpy>
#include <QtTest/QTest>
#include <QtWebEngineCore/QWebEngineProfile>

#include <memory>
#include <optional>

using namespace Qt::StringLiterals;

namespace {

constexpr int patienceMilliseconds = 60'000; // the machine may be busy

} // namespace

VXChannelPage::VXChannelPage(QWebEngineProfile* theProfile)
    : QWebEnginePage(theProfile != nullptr ? theProfile : QWebEngineProfile::defaultProfile())
{
}

bool VXChannelPage::prepare()
{
    return qputenv("QTWEBENGINE_CHROMIUM_FLAGS", "--no-sandbox --disable-gpu") &&
           (qEnvironmentVariableIsSet("QTEST_FUNCTION_TIMEOUT") ||
            qputenv("QTEST_FUNCTION_TIMEOUT", "280000"));
}

QVariant VXChannelPage::eval(const QString& theScript)
{
    // Shared, because a late answer may come after this function has ended.
    const auto answer = std::make_shared<std::optional<QVariant>>();
    runJavaScript(theScript, [answer](const QVariant& theResult) { *answer = theResult; });
    if (!QTest::qWaitFor([&] { return answer->has_value(); }, patienceMilliseconds))
        return u"no answer"_s;
    return **answer;
}

bool VXChannelPage::open(const QUrl& theUrl)
{
    QSignalSpy finished(this, &QWebEnginePage::loadFinished);
    load(theUrl);
    return finished.wait(patienceMilliseconds) && finished.constLast().constFirst().toBool();
}

bool VXChannelPage::openHtml(const QString& theHtml)
{
    QSignalSpy finished(this, &QWebEnginePage::loadFinished);
    setHtml(theHtml);
    return finished.wait(patienceMilliseconds) && finished.constLast().constFirst().toBool();
}

QUrl VXChannelPage::orderUrl(const QUrlQuery& theQuery)
{
    QUrl url(u"qrc:///web_channel/order.html"_s);
    url.setQuery(theQuery);
    return url;
}

QString VXChannelPage::orderHtml(const QUrlQuery& theQuery)
{
    QFile file(u":/web_channel/order.html"_s);
    if (!file.open(QIODevice::ReadOnly))
        return {};
    return QString::fromUtf8(file.readAll())
        .replace("location.search"_L1, u'\'' + theQuery.toString(QUrl::FullyEncoded) + u'\'');
}

void VXChannelPage::javaScriptConsoleMessage(JavaScriptConsoleMessageLevel,
                                             const QString& theMessage, int, const QString&)
{
    myConsole << theMessage;
}
