// Questions of the library, asked from the GUI thread and from workers in real exchanges, and
// answered by clicks on the real dialogs: 1,000 rounds of every kind of question with every kind of
// answer after random delays, with one worker and with two at once.
//
// No QTest and no QThread here, see VXThreadScenarios.cpp.

#include "VXRawPeer.h"
#include "VXTestEnvironment.h"
#include "VXTlsPeer.h"

#include <VXNetworking/VXHttpOperation.h>
#include <VXNetworking/VXNetworkAccessManager.h>
#include <VXNetworking/VXNetworkAccessManagerSignalDispatcher.h>
#include <VXNetworking/VXNetworkSettings.h>
#include <VXNetworking/VXRequestNetwork.h>

#include <QtCore/QPointer>
#include <QtCore/QTimer>
#include <QtNetwork/QAuthenticator>
#include <QtNetwork/QNetworkProxy>
#include <QtWidgets/QApplication>
#include <QtWidgets/QDialogButtonBox>
#include <QtWidgets/QLineEdit>
#include <QtWidgets/QMessageBox>
#include <QtWidgets/QPushButton>

#include <array>
#include <atomic>
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <random>
#include <thread>
#include <vector>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

enum class Kind
{
    Certificate,
    Server,
    Proxy,
};

enum class Way
{
    Yes,
    No,
    Close,
};

constexpr int kinds = 3;
constexpr int ways = 3;
constexpr int rounds = 1000;
constexpr int longestDelay = 4; // milliseconds

const QByteArray body = "angekommen";

/// Clicks in every dialog that appears, as soon as a user could: when it is on top.
class ClickingUser : public QObject
{
public:
    ClickingUser() { qApp->installEventFilter(this); }

    void setWay(Way theWay) { myWay = theWay; }
    [[nodiscard]] int dialogs() const { return myDialogs; }

    bool eventFilter(QObject* theObject, QEvent* theEvent) override
    {
        if (theEvent->type() != QEvent::Show)
            return false;
        if (auto* dialog = qobject_cast<QDialog*>(theObject)) {
            ++myDialogs;
            clickLater(dialog);
        }
        return false;
    }

private:
    void clickLater(const QPointer<QDialog>& theDialog)
    {
        const int delay = std::uniform_int_distribution(0, longestDelay)(myRandom);
        QTimer::singleShot(delay, Qt::PreciseTimer, this, [this, theDialog] {
            if (!theDialog)
                return;
            if (QApplication::activeModalWidget() == theDialog)
                click(theDialog);
            else
                clickLater(theDialog);
        });
    }

    void click(QDialog* theDialog) const
    {
        if (myWay == Way::Close) {
            theDialog->close();
        } else if (auto* box = qobject_cast<QMessageBox*>(theDialog)) {
            box->button(myWay == Way::Yes ? QMessageBox::Yes : QMessageBox::No)->click();
        } else {
            theDialog->findChild<QLineEdit*>(u"userNameEdit"_s)->setText(u"anna"_s);
            theDialog->findChild<QLineEdit*>(u"passwordEdit"_s)->setText(u"geheim"_s);
            theDialog->findChild<QDialogButtonBox*>()
                ->button(myWay == Way::Yes ? QDialogButtonBox::Ok : QDialogButtonBox::Cancel)
                ->click();
        }
    }

    Way myWay = Way::Yes;
    int myDialogs = 0;
    std::minstd_rand myRandom{1};
};

/// What the questions come from. Peers stay, so that no port comes twice: an accepted certificate
/// is never asked for again.
class World
{
public:
    World()
    {
        myServer.setHandler([](const VXRawRequest& theRequest) {
            return theRequest.header("Authorization").isEmpty()
                       ? VXRawAnswer::http(401, {}, {"WWW-Authenticate: Basic realm=\"r\""})
                       : VXRawAnswer::http(200, body);
        });
        myProxy.setHandler([](const VXRawRequest& theRequest) {
            return theRequest.header("Proxy-Authorization").isEmpty()
                       ? VXRawAnswer::http(407, {}, {"Proxy-Authenticate: Basic realm=\"r\""})
                       : VXRawAnswer::http(200, body);
        });
        auto* settings = VXNetworkSettings::instance();
        settings->setProxyType(QNetworkProxy::HttpProxy);
        settings->setProxyHostName(u"127.0.0.1"_s);
        settings->setProxyPort(myProxy.port());
        settings->setProxyChoice(ProxyChoiceManual); // the loopback goes past it
    }

    /// The address of an exchange that raises the question.
    QUrl address(Kind theKind)
    {
        if (theKind == Kind::Server)
            return myServer.url();
        if (theKind == Kind::Proxy)
            return QUrl(u"http://service.test/"_s);
        myTlsPeers.push_back(std::make_unique<VXTlsPeer>(myIdentity));
        myTlsPeers.back()->setAnswer(VXRawAnswer::http(200, body, {"Connection: close"}).close());
        return myTlsPeers.back()->url();
    }

private:
    VXTestCertificates myCertificates;
    VXTestCertificates::Identity myIdentity = myCertificates.selfSigned();
    VXRawPeer myServer;
    VXRawPeer myProxy;
    std::vector<std::unique_ptr<VXTlsPeer>> myTlsPeers;
};

/// What the exchange must end with.
int expectedCode(Kind theKind, Way theWay)
{
    constexpr std::array refused{3506, 3704, 3605};
    return theWay == Way::Yes ? 0 : refused.at(static_cast<size_t>(theKind));
}

struct Outcome
{
    int code = -1;
    QByteArray body;
};

Outcome exchange(const QUrl& theUrl)
{
    VXHttpOperation operation =
        VXHttpOperation::create(theUrl, QNetworkAccessManager::GetOperation);
    operation.setTimeout(60);
    Outcome outcome;
    outcome.body = operation.exec();
    outcome.code = operation.errorStatus().errorCode();
    VXNetworkAccessManager::releaseThreadInstance(); // with the passwords that it remembers
    return outcome;
}

/// One exchange in this thread, or one in each worker while this thread handles events.
std::vector<Outcome> exchanges(const std::vector<QUrl>& theUrls, int theWorkers)
{
    if (theWorkers == 0)
        return {exchange(theUrls.front())};
    std::vector<Outcome> outcomes(theUrls.size());
    std::atomic<size_t> running = theUrls.size();
    std::vector<std::thread> workers;
    for (size_t i = 0; i < theUrls.size(); ++i) {
        workers.emplace_back([&, i] {
            outcomes[i] = exchange(theUrls[i]);
            --running;
        });
    }
    while (running > 0)
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents, 1);
    for (std::thread& worker : workers)
        worker.join();
    return outcomes;
}

class Questions : public QObject
{
public:
    Questions()
    {
        using Dispatcher = VXNetworkAccessManagerSignalDispatcher;
        auto* mediator = VXRequestNetwork::instance();
        connect(Dispatcher::instance(), &Dispatcher::authenticationRequired, mediator,
                &VXRequestNetwork::handleAuthenticationRequest);
        connect(Dispatcher::instance(), &Dispatcher::proxyAuthenticationRequired, mediator,
                &VXRequestNetwork::handleProxyAuthenticationRequest);
        connect(Dispatcher::instance(), &Dispatcher::askIgnoreSSLErrors, mediator,
                [mediator](const QString& theHost, const QStringList& theErrors, bool* theResult) {
                    *theResult = mediator->askIgnoreSSLErrors(theHost, theErrors);
                });
    }
};

bool isAsExpected(int theRound, Kind theKind, Way theWay, const Outcome& theOutcome)
{
    const int code = expectedCode(theKind, theWay);
    const bool isBodyRight = theWay != Way::Yes || theOutcome.body == body;
    if (theOutcome.code == code && isBodyRight)
        return true;
    std::fprintf(stderr, "round %d, question %d, answer %d: code %d instead of %d\n", theRound,
                 static_cast<int>(theKind), static_cast<int>(theWay), theOutcome.code, code);
    return false;
}

/// All pairs of question and answer come in turn; every third round has no worker, one, or two.
bool playRound(int theRound, World& theWorld, ClickingUser& theUser)
{
    const int workers = theRound % 3;
    const Way way = static_cast<Way>(theRound / 3 % ways);
    const Kind first = static_cast<Kind>(theRound / 9 % kinds);
    const Kind second = static_cast<Kind>(theRound / 27 % kinds);
    theUser.setWay(way);

    std::vector<Kind> asked{first};
    if (workers == 2)
        asked.push_back(second);
    std::vector<QUrl> urls;
    for (const Kind kind : asked)
        urls.push_back(theWorld.address(kind));
    const int before = theUser.dialogs();
    const std::vector<Outcome> outcomes = exchanges(urls, workers);

    bool isGood = theUser.dialogs() - before == static_cast<int>(asked.size());
    if (!isGood)
        std::fprintf(stderr, "round %d: %d dialogs\n", theRound, theUser.dialogs() - before);
    for (size_t i = 0; i < asked.size(); ++i)
        isGood = isAsExpected(theRound, asked[i], way, outcomes[i]) && isGood;
    return isGood;
}

// A thousand exchanges and their log lines would hide what matters.
void onlyFatalMessages(QtMsgType theType, const QMessageLogContext&, const QString& theMessage)
{
    if (theType == QtFatalMsg || theType == QtCriticalMsg)
        std::fprintf(stderr, "%s\n", qUtf8Printable(theMessage));
}

} // namespace

int main(int theArgumentCount, char* theArguments[])
{
    qInstallMessageHandler(onlyFatalMessages);
    const VXTestEnvironment environment;
    QApplication application(theArgumentCount, theArguments);
    QApplication::setQuitOnLastWindowClosed(false);
    const Questions questions;
    World world;
    ClickingUser user;

    int failures = 0;
    for (int round = 0; round < rounds; ++round)
        failures += playRound(round, world, user) ? 0 : 1;
    std::printf("%d rounds, %d dialogs, %d failures\n", rounds, user.dialogs(), failures);
    return failures == 0 ? EXIT_SUCCESS : EXIT_FAILURE;
}
