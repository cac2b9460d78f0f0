#include "VXChannelPage.h"
#include "VXLogCapture.h"
#include "VXTestMain.h"
#include "VXWizardScreen.h"

#include <VXNetworking/VXWebSocketCommunication.h>

#include <QtCore/QFile>
#include <QtCore/QJsonArray>
#include <QtCore/QJsonDocument>
#include <QtCore/QJsonObject>
#include <QtCore/QPointer>
#include <QtCore/QTemporaryDir>
#include <QtCore/QTimer>
#include <QtNetwork/QTcpServer>
#include <QtTest/QSignalSpy>
#include <QtWebChannel/QWebChannel>
#include <QtWebChannel/QWebChannelAbstractTransport>
#include <QtWebEngineCore/QWebEngineProfile>
#include <QtWebEngineWidgets/QWebEngineView>
#include <QtWidgets/QApplication>

#include <memory>

using namespace Qt::StringLiterals;

namespace {

constexpr int patience = 60'000; // milliseconds
const QString bridgeAgent = u"Mozilla/5.0 (JS Bridge) Orvelo Desk"_s;
const QString presses =
    u"function press(key, repeat = false) { return document.getElementById('couponCodeEdit')"
    ".dispatchEvent(new KeyboardEvent('keydown', {key: key, repeat: repeat, bubbles: true, "
    "cancelable: true})); }"_s;

/// A page whose channel is up.
struct Order
{
    Order()
    {
        communication->registerObject(u"wizardScreen"_s, &screen);
        QVERIFY(page.open(VXChannelPage::orderUrl(communication->addServerParameter({}))));
        QTRY_COMPARE_WITH_TIMEOUT(screen.readyCount, 1, patience);
    }

    /// Runs theScript as the page's own, where there is no result to wait for.
    void run(const QString& theScript)
    {
        [[maybe_unused]] const QVariant none = page.eval(theScript);
    }

    /// Proves that all calls that the page has made until now have arrived.
    void settle()
    {
        const int before = screen.readyCount;
        run(u"wizardScreen.webChannelReady()"_s);
        QTRY_COMPARE_WITH_TIMEOUT(screen.readyCount, before + 1, patience);
    }

    QString display(const QString& theId)
    {
        return page.eval(u"getComputedStyle(document.getElementById('%1')).display"_s.arg(theId))
            .toString();
    }

    VXWizardScreen screen;
    std::unique_ptr<VXWebSocketCommunication> communication =
        std::make_unique<VXWebSocketCommunication>(u"order"_s);
    VXChannelPage page;
};

/// The native side of a bridge whose page keeps what it posts: asks for that in turns.
class BridgeTransport : public QWebChannelAbstractTransport
{
    Q_OBJECT

public:
    explicit BridgeTransport(VXChannelPage& thePage)
        : myPage(thePage)
    {
        connect(&myTimer, &QTimer::timeout, this, &BridgeTransport::fetch);
        myTimer.start(10);
    }

    QStringList posts;

public Q_SLOTS:
    void sendMessage(const QJsonObject& theMessage) override
    {
        const QByteArray list =
            QJsonDocument(QJsonArray{QString::fromUtf8(
                              QJsonDocument(theMessage).toJson(QJsonDocument::Compact))})
                .toJson();
        myPage.runJavaScript(u"transport.createMessage(%1[0])"_s.arg(QString::fromUtf8(list)));
    }

private:
    void fetch()
    {
        myPage.runJavaScript(u"posts.splice(0)"_s,
                             [self = QPointer(this)](const QVariant& theList) {
                                 if (self)
                                     self->take(theList.toStringList());
                             });
    }

    void take(const QStringList& thePosts)
    {
        posts << thePosts;
        for (const QString& post : thePosts) {
            const QJsonDocument document = QJsonDocument::fromJson(post.toUtf8());
            if (document.isObject())
                Q_EMIT messageReceived(document.object(), this);
        }
    }

    VXChannelPage& myPage;
    QTimer myTimer;
};

} // namespace

class tst_web_channel : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void theScriptsAreInTheLibrary();
    void aPageReachesTheObject_data();
    void aPageReachesTheObject();
    void theConnectionIsLoggedToTheConsole();
    void theObjectIsTheWindowsWizardScreen();
    void theApplyButtonSendsTheText();
    void anEmptyFieldSendsNothing();
    void theClearButtonEmptiesFieldAndCoupon();
    void enterClicksTheApplyButtonOnce();
    void enterOfTheKeyboardSendsOnce();
    void otherKeysSendNothing();
    void theNativeSideShowsTheCouponEdit();
    void theNativeSideSetsTheCouponCode_data();
    void theNativeSideSetsTheCouponCode();
    void theNativeSideShowsTheNewsletter();
    void theNativeSideChecksTheNewsletter();
    void thePagesFunctionsAnswerScripts();
    void aClosedChannelIsLoggedToTheConsole();
    void aRefusedChannelIsLoggedToTheConsole();
    void aWrongTokenIsRefused();
    void theTokenIsSentOnceBeforeTheFirstPayload();
    void oneMegabytePassesBothWays();
    void twoPagesShareOneServer();
    void onlyTheBridgesUserAgentIsSandboxed_data();
    void onlyTheBridgesUserAgentIsSandboxed();
    void openTransportDoesNothingOutsideTheBridge();
    void theBridgePostsItsMessages();
    void theBridgeRaisesMessageEvents();
    void theBridgeReachesTheObject();
    void theShippedPageWorks();
    void theShippedPageShowsWhatTheApplicationSays();
    void theShippedPageFollowsTheDarkSkin();
};

void tst_web_channel::theScriptsAreInTheLibrary()
{
    for (const QString& name :
         {u":/VXWebCommunication/webmessage.js"_s, u":/VXWebCommunication/ordersummary.js"_s,
          u":/qtwebchannel/qwebchannel.js"_s})
        QVERIFY2(QFile(name).size() > 0, qPrintable(name));
}

void tst_web_channel::aPageReachesTheObject_data()
{
    QTest::addColumn<QString>("kind");
    for (const char* kind : {"file", "data", "qrc"})
        QTest::newRow(kind) << QString::fromLatin1(kind);
}

void tst_web_channel::aPageReachesTheObject()
{
    QFETCH(QString, kind);
    VXWebSocketCommunication communication(u"order"_s);
    VXWizardScreen screen;
    communication.registerObject(u"wizardScreen"_s, &screen);
    const QUrlQuery query = communication.addServerParameter({});
    const QTemporaryDir folder;
    VXChannelPage page;

    if (kind == "data"_L1) {
        QVERIFY(page.openHtml(VXChannelPage::orderHtml(query)));
    } else if (kind == "file"_L1) {
        QVERIFY(QFile::copy(u":/web_channel/order.html"_s, folder.filePath(u"order.html"_s)));
        QUrl url = QUrl::fromLocalFile(folder.filePath(u"order.html"_s));
        url.setQuery(query);
        QVERIFY(page.open(url));
    } else {
        QVERIFY(page.open(VXChannelPage::orderUrl(query)));
    }
    QTRY_COMPARE_WITH_TIMEOUT(screen.readyCount, 1, patience);
    QCOMPARE(page.url().scheme(), kind);
}

void tst_web_channel::theConnectionIsLoggedToTheConsole()
{
    const Order order;
    QCOMPARE(order.page.console(), QStringList{u"Connecting to WebSocket server at %1."_s.arg(
                                       order.communication->serverUrl().toString())});
}

void tst_web_channel::theObjectIsTheWindowsWizardScreen()
{
    Order order;
    order.run(u"window.wizardScreen.applyCoupon('from the page')"_s);
    QTRY_COMPARE_WITH_TIMEOUT(order.screen.coupons, QStringList{u"from the page"_s}, patience);
}

void tst_web_channel::theApplyButtonSendsTheText()
{
    Order order;
    order.run(u"couponCodeEdit.value = ' Sommer € \"10\" '; applyCouponButton.click()"_s);
    QTRY_COMPARE_WITH_TIMEOUT(order.screen.coupons, QStringList{u" Sommer € \"10\" "_s}, patience);
    QCOMPARE(order.page.eval(u"couponCodeEdit.value"_s).toString(), u" Sommer € \"10\" "_s);
}

void tst_web_channel::anEmptyFieldSendsNothing()
{
    Order order;
    order.run(u"applyCouponButton.click()"_s);
    order.settle();
    QCOMPARE(order.screen.coupons, QStringList());
}

void tst_web_channel::theClearButtonEmptiesFieldAndCoupon()
{
    Order order;
    order.run(u"couponCodeEdit.value = 'SOMMER'; clearCouponButton.click()"_s);
    QTRY_COMPARE_WITH_TIMEOUT(order.screen.coupons, QStringList{QString()}, patience);
    QCOMPARE(order.page.eval(u"couponCodeEdit.value"_s).toString(), QString());
}

void tst_web_channel::enterClicksTheApplyButtonOnce()
{
    Order order;
    order.run(presses);
    const bool isLeftToForm =
        order.page.eval(u"couponCodeEdit.value = 'SOMMER'; press('Enter')"_s).toBool();
    order.run(u"press('Enter', true)"_s); // the key is held
    order.settle();
    QCOMPARE(order.screen.coupons, QStringList{u"SOMMER"_s});
    QVERIFY(!isLeftToForm);
}

void tst_web_channel::enterOfTheKeyboardSendsOnce()
{
    Order order;
    QWebEngineView view;
    view.setPage(&order.page);
    view.resize(600, 400);
    view.show();
    QVERIFY(QTest::qWaitForWindowExposed(&view));
    order.run(u"setCouponEditVisible(true); couponCodeEdit.focus()"_s);
    QTRY_VERIFY_WITH_TIMEOUT(view.focusProxy() != nullptr, patience);
    view.focusProxy()->setFocus();

    QTest::keyClicks(view.focusProxy(), u"abc"_s);
    QTRY_COMPARE_WITH_TIMEOUT(order.page.eval(u"couponCodeEdit.value"_s).toString(), u"abc"_s,
                              patience);
    QTest::keyClick(view.focusProxy(), Qt::Key_Return);
    QTRY_COMPARE_WITH_TIMEOUT(order.screen.coupons, QStringList{u"abc"_s}, patience);
    order.settle();
    QCOMPARE(order.screen.coupons, QStringList{u"abc"_s});
    QCOMPARE(order.page.url().path(), u"/web_channel/order.html"_s); // the form was not sent
}

void tst_web_channel::otherKeysSendNothing()
{
    Order order;
    order.run(presses);
    order.run(u"couponCodeEdit.value = 'SOMMER'; press('Tab'); press('a'); press(' ')"_s);
    order.settle();
    QCOMPARE(order.screen.coupons, QStringList());
}

void tst_web_channel::theNativeSideShowsTheCouponEdit()
{
    Order order;
    Q_EMIT order.screen.setCouponEditVisible(true);
    QTRY_COMPARE_WITH_TIMEOUT(order.display(u"couponEntryRow"_s), u"inline"_s, patience);
    QCOMPARE(order.display(u"linkCouponText"_s), u"none"_s);

    Q_EMIT order.screen.setCouponEditVisible(false);
    QTRY_COMPARE_WITH_TIMEOUT(order.display(u"couponEntryRow"_s), u"none"_s, patience);
    QCOMPARE(order.display(u"linkCouponText"_s), u"inline"_s);
}

void tst_web_channel::theNativeSideSetsTheCouponCode_data()
{
    QTest::addColumn<QString>("code");
    QTest::addColumn<bool>("isClearable");

    QTest::newRow("code") << u"SOMMER"_s << true;
    QTest::newRow("markup is text") << u"<b>'\"</b>"_s << true;
    QTest::newRow("blanks") << u"  "_s << false;
    QTest::newRow("empty") << u""_s << false;
}

void tst_web_channel::theNativeSideSetsTheCouponCode()
{
    QFETCH(QString, code);
    QFETCH(bool, isClearable);
    Order order;
    order.run(u"setCouponEditVisible(true); setCouponCode('before')"_s);
    QVERIFY(order.display(u"clearCouponButton"_s) != u"none"_s);

    Q_EMIT order.screen.setCouponCode(code);
    QTRY_COMPARE_WITH_TIMEOUT(order.page.eval(u"couponCodeEdit.value"_s).toString(), code,
                              patience);
    QCOMPARE(order.display(u"clearCouponButton"_s) != u"none"_s, isClearable);
    QCOMPARE(order.screen.coupons, QStringList());
}

void tst_web_channel::theNativeSideShowsTheNewsletter()
{
    Order order;
    QCOMPARE(order.display(u"newsletterBox"_s), u"none"_s);
    Q_EMIT order.screen.setNewsletterVisible(true);
    QTRY_VERIFY_WITH_TIMEOUT(order.display(u"newsletterBox"_s) != u"none"_s, patience);
    Q_EMIT order.screen.setNewsletterVisible(false);
    QTRY_COMPARE_WITH_TIMEOUT(order.display(u"newsletterBox"_s), u"none"_s, patience);
}

void tst_web_channel::theNativeSideChecksTheNewsletter()
{
    Order order;
    Q_EMIT order.screen.setNewsletterChecked(true);
    QTRY_COMPARE_WITH_TIMEOUT(order.page.eval(u"acceptNewsletter.checked"_s).toBool(), true,
                              patience);
    Q_EMIT order.screen.setNewsletterChecked(false);
    QTRY_COMPARE_WITH_TIMEOUT(order.page.eval(u"acceptNewsletter.checked"_s).toBool(), false,
                              patience);
}

void tst_web_channel::thePagesFunctionsAnswerScripts()
{
    Order order;
    VXChannelPage& page = order.page;
    QCOMPARE(page.eval(u"getCouponEditVisiblity()"_s), QVariant(false));
    order.run(u"setCouponEditVisible(true)"_s);
    QCOMPARE(page.eval(u"getCouponEditVisiblity()"_s), QVariant(true));
    QCOMPARE(order.display(u"linkCouponText"_s), u"none"_s);

    order.run(u"couponCodeEdit.value = 'x y'"_s);
    QCOMPARE(page.eval(u"getCouponCode()"_s), QVariant(u"x y"_s));
    QCOMPARE(page.eval(u"getNewsletterState()"_s), QVariant(false));
    order.run(u"acceptNewsletter.checked = true"_s);
    QCOMPARE(page.eval(u"getNewsletterState()"_s), QVariant(true));
    QCOMPARE(page.eval(u"getNewsletterVisibility()"_s), QVariant(false));
    order.run(u"newsletterBox.style.display = 'block'"_s);
    QCOMPARE(page.eval(u"getNewsletterVisibility()"_s), QVariant(true));
}

void tst_web_channel::aClosedChannelIsLoggedToTheConsole()
{
    Order order;
    order.communication.reset();
    QTRY_COMPARE_WITH_TIMEOUT(order.page.console().constLast(), u"web channel closed"_s, patience);
}

void tst_web_channel::aRefusedChannelIsLoggedToTheConsole()
{
    QTcpServer gone;
    QVERIFY(gone.listen(QHostAddress::LocalHost));
    const QString url = u"ws://127.0.0.1:%1"_s.arg(gone.serverPort());
    gone.close();

    QUrlQuery query;
    query.addQueryItem(u"webChannelBaseUrl"_s, url);
    query.addQueryItem(u"webChannelToken"_s, u"x"_s);
    VXChannelPage page;
    QVERIFY(page.open(VXChannelPage::orderUrl(query)));
    QTRY_VERIFY_WITH_TIMEOUT(page.console().contains(u"web channel closed"_s), patience);
    QVERIFY(page.console().contains(u"Connecting to WebSocket server at %1."_s.arg(url)));
    QVERIFY(page.console().contains(u"web channel error: [object Event]"_s));
}

void tst_web_channel::aWrongTokenIsRefused()
{
    VXWebSocketCommunication communication(u"order"_s);
    VXWizardScreen screen;
    communication.registerObject(u"wizardScreen"_s, &screen);
    QUrlQuery query = communication.addServerParameter({});
    query.removeQueryItem(u"webChannelToken"_s);
    query.addQueryItem(u"webChannelToken"_s, u"{00000000-0000-0000-0000-000000000000}"_s);
    const VXLogCapture log;
    VXChannelPage page;
    QVERIFY(page.open(VXChannelPage::orderUrl(query)));

    const auto refusals = [&] { return log.textsWith(u"myAuthState is still not done, 2 "_s); };
    QTRY_COMPARE_WITH_TIMEOUT(refusals().size(), 1, patience);
    QCOMPARE(refusals().constFirst(),
             u"myAuthState is still not done, 2 , message: \"{\\\"type\\\":3,\\\"id\\\":0}\""_s);
    // Another page, for which the time is enough.
    VXChannelPage other;
    QVERIFY(other.open(VXChannelPage::orderUrl(communication.addServerParameter({}))));
    QTRY_COMPARE_WITH_TIMEOUT(screen.readyCount, 1, patience);
    QVERIFY(page.eval(u"window.wizardScreen === undefined"_s).toBool());
}

void tst_web_channel::theTokenIsSentOnceBeforeTheFirstPayload()
{
    Order order;
    const QString watch =
        u"const sent = []; const original = WebSocket.prototype.send;"
        "WebSocket.prototype.send = function (data) { sent.push(data); original.call(this, data); "
        "};"
        "const other = createTransport(baseUrl, token);"
        "other.onopen = () => { other.send('{\"type\":4}'); other.send('{\"type\":4}'); };"_s;
    order.run(watch);
    QTRY_COMPARE_WITH_TIMEOUT(order.page.eval(u"sent"_s).toStringList(),
                              (QStringList{u"VXSecToken:"_s + order.communication->securityToken(),
                                           u"{\"type\":4}"_s, u"{\"type\":4}"_s}),
                              patience);
}

void tst_web_channel::oneMegabytePassesBothWays()
{
    Order order;
    order.run(u"wizardScreen.applyCoupon('x'.repeat(1 << 20))"_s);
    QTRY_COMPARE_WITH_TIMEOUT(order.screen.coupons.size(), 1, patience);
    QCOMPARE(order.screen.coupons.constFirst(), QString(1 << 20, u'x'));

    Q_EMIT order.screen.setCouponCode(QString(1 << 20, u'y'));
    QTRY_COMPARE_WITH_TIMEOUT(order.page.eval(u"getCouponCode() === 'y'.repeat(1 << 20)"_s),
                              QVariant(true), patience);
}

void tst_web_channel::twoPagesShareOneServer()
{
    Order order;
    VXChannelPage second;
    QVERIFY(second.open(VXChannelPage::orderUrl(order.communication->addServerParameter({}))));
    QTRY_COMPARE_WITH_TIMEOUT(order.screen.readyCount, 2, patience);

    Q_EMIT order.screen.setCouponCode(u"BEIDE"_s);
    for (VXChannelPage* page : {&order.page, &second})
        QTRY_COMPARE_WITH_TIMEOUT(page->eval(u"getCouponCode()"_s).toString(), u"BEIDE"_s,
                                  patience);
}

void tst_web_channel::onlyTheBridgesUserAgentIsSandboxed_data()
{
    QTest::addColumn<QString>("agent");
    QTest::addColumn<bool>("isSandboxed");

    QTest::newRow("the bridge's") << bridgeAgent << true;
    QTest::newRow("nothing before it") << u"(JS Bridge) Orvelo Desk"_s << true;
    QTest::newRow("more behind it") << bridgeAgent + u" 7.4"_s << false;
    QTest::newRow("lower case") << bridgeAgent.toLower() << false;
    QTest::newRow("no bridge") << u"Mozilla/5.0 Orvelo Desk"_s << false;
    QTest::newRow("the engine's own") << QString() << false;
}

void tst_web_channel::onlyTheBridgesUserAgentIsSandboxed()
{
    QFETCH(QString, agent);
    QFETCH(bool, isSandboxed);
    QWebEngineProfile profile;
    profile.setHttpUserAgent(agent);
    VXChannelPage page(&profile);
    QVERIFY(page.openHtml(u"<script src='qrc:///VXWebCommunication/webmessage.js'></script>"_s));
    QCOMPARE(page.eval(u"isSandboxed()"_s), QVariant(isSandboxed));
}

void tst_web_channel::openTransportDoesNothingOutsideTheBridge()
{
    VXChannelPage page;
    QVERIFY(page.openHtml(u"<script src='qrc:///VXWebCommunication/webmessage.js'></script>"_s));
    const QString count =
        u"let opened = 0; transport = {onopen: () => ++opened, send: () => ++opened};"
        "openTransport(); openTransport(transport); opened"_s;
    QCOMPARE(page.eval(count).toInt(), 0);
}

void tst_web_channel::theBridgePostsItsMessages()
{
    QWebEngineProfile profile;
    profile.setHttpUserAgent(bridgeAgent);
    VXChannelPage page(&profile);
    QVERIFY(page.open(VXChannelPage::orderUrl(QUrlQuery(u"bridge=1"_s))));

    // The channel's first request is posted while the transport opens, then the native side is
    // told.
    QTRY_COMPARE_WITH_TIMEOUT(page.eval(u"posts"_s).toStringList(),
                              (QStringList{u"{\"type\":3,\"id\":0}"_s, u"___INIT___"_s}), patience);
    QVERIFY(page.eval(u"transport instanceof MessagingTransport"_s).toBool());
}

void tst_web_channel::theBridgeRaisesMessageEvents()
{
    QWebEngineProfile profile;
    profile.setHttpUserAgent(bridgeAgent);
    VXChannelPage page(&profile);
    QVERIFY(page.openHtml(u"<script src='qrc:///VXWebCommunication/webmessage.js'></script>"_s));

    const QString ask =
        u"let events = []; const made = createTransport('', '');"
        "made.createMessage('nobody listens'); made.onmessage = e => events.push(e);"
        "made.createMessage('hello');"
        "[events.length, events[0] instanceof MessageEvent, events[0].type, "
        "events[0].data].join()"_s;
    QCOMPARE(page.eval(ask).toString(), u"1,true,message,hello"_s);
}

void tst_web_channel::theBridgeReachesTheObject()
{
    QWebEngineProfile profile;
    profile.setHttpUserAgent(bridgeAgent);
    VXChannelPage page(&profile);
    QWebChannel channel;
    VXWizardScreen screen;
    channel.registerObject(u"wizardScreen"_s, &screen);
    QVERIFY(page.open(VXChannelPage::orderUrl(QUrlQuery(u"bridge=1"_s))));
    BridgeTransport transport(page);
    channel.connectTo(&transport);
    QTRY_COMPARE_WITH_TIMEOUT(screen.readyCount, 1, patience);

    [[maybe_unused]] const QVariant none =
        page.eval(u"couponCodeEdit.value = 'BRÜCKE'; applyCouponButton.click()"_s);
    QTRY_COMPARE_WITH_TIMEOUT(screen.coupons, QStringList{u"BRÜCKE"_s}, patience);
    Q_EMIT screen.setCouponCode(u"zurück \"€\""_s);
    QTRY_COMPARE_WITH_TIMEOUT(page.eval(u"getCouponCode()"_s).toString(), u"zurück \"€\""_s,
                              patience);
}

namespace {

/// The order summary among the assets, with its channel up.
struct ShippedOrder
{
    ShippedOrder()
    {
        communication.registerObject(u"wizardScreen"_s, &screen);
        QUrl url = QUrl::fromLocalFile(QStringLiteral(VX_SOURCE_DIR) +
                                       u"/assets/html/ordersummary.html"_s);
        url.setQuery(communication.addServerParameter({}));
        QVERIFY(page.open(url));
        QTRY_COMPARE_WITH_TIMEOUT(screen.readyCount, 1, patience);
    }

    VXWizardScreen screen;
    VXWebSocketCommunication communication{u"order"_s};
    VXChannelPage page;
};

const QString emptySummary = u"showSummary({articles: [], sums: [], total: '1,00 €', "
                             "couponMessage: '', couponIsWrong: false})"_s;

} // namespace

void tst_web_channel::theShippedPageWorks()
{
    ShippedOrder order;
    VXChannelPage& page = order.page;
    QCOMPARE(
        page.eval(u"[getCouponEditVisiblity(), getNewsletterVisibility()].join()"_s).toString(),
        u"false,false"_s);
    QCOMPARE(page.eval(u"linkCoupon.click(); [getCouponEditVisiblity(), "
                       "document.activeElement.id].join()"_s)
                 .toString(),
             u"true,couponCodeEdit"_s);
    page.runJavaScript(u"couponCodeEdit.value = 'SOMMER'; applyCouponButton.click()"_s);
    QTRY_COMPARE_WITH_TIMEOUT(order.screen.coupons, QStringList{u"SOMMER"_s}, patience);

    Q_EMIT order.screen.setCouponCode(u"SOMMER"_s);
    Q_EMIT order.screen.setNewsletterVisible(true);
    Q_EMIT order.screen.setNewsletterChecked(true);
    QTRY_COMPARE_WITH_TIMEOUT(page.eval(u"getNewsletterState()"_s).toBool(), true, patience);
    QVERIFY(page.eval(u"getComputedStyle(clearCouponButton).display !== 'none'"_s).toBool());

    page.runJavaScript(u"orderButton.click(); "_s + emptySummary + u"; orderButton.click()"_s);
    QTRY_COMPARE_WITH_TIMEOUT(order.screen.orders, QList<bool>{true}, patience);
}

void tst_web_channel::theShippedPageShowsWhatTheApplicationSays()
{
    ShippedOrder order;
    VXChannelPage& page = order.page;
    const QString show =
        u"showSummary({articles: [['<b>Fotobuch</b>', '1', '39,95 €']], sums: [['Versand', "
        "'4,99 €']], total: '44,94 €', couponMessage: 'Es gibt ihn nicht.', couponIsWrong: true});"
        "[articles.innerText.trim(), sums.innerText.trim(), total.innerText, couponMessage.className].join('|')"_s;
    QCOMPARE(page.eval(show).toString().simplified(),
             u"<b>Fotobuch</b> 1 39,95 €|Versand 4,99 €|44,94 €|error"_s);
    QCOMPARE(
        page.eval(u"showOrdered('Danke'); [orderMessage.innerText, "
                  "document.querySelectorAll('button:enabled, input:enabled').length].join()"_s)
            .toString(),
        u"Danke,0"_s);
    QCOMPARE(page.console().size(), 1); // no error, no refusal by the page's policy
}

void tst_web_channel::theShippedPageFollowsTheDarkSkin()
{
    ShippedOrder order;
    const QString colour = u"getComputedStyle(document.documentElement).backgroundColor"_s;
    QCOMPARE(order.page.eval(colour).toString(), u"rgb(243, 245, 248)"_s);
    order.page.runJavaScript(
        u"style = document.createElement('style'); style.textContent = '@media screen{:root { "
        "color-scheme: dark only;}}'; document.head.append(style);"_s);
    QTRY_COMPARE_WITH_TIMEOUT(order.page.eval(colour).toString(), u"rgb(16, 21, 27)"_s, patience);
}

static const bool isPrepared = VXChannelPage::prepare();

VX_TEST_MAIN(QApplication, tst_web_channel)
#include "tst_web_channel.moc"
