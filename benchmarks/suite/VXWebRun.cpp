#include "VXWebRun.h"

#include "VXBareChannel.h"
#include "VXBenchPeer.h"
#include "VXBenchSession.h"
#include "VXWebWait.h"

#include <VXCore/VXDirectoryConfig.h>
#include <VXCore/VXInitializer.h>
#include <VXNetworking/VXAbstractCommunication.h>
#include <VXNetworking/VXJavaScriptExecutor.h>
#include <VXNetworking/VXWebView.h>

#include <QtCore/QDir>
#include <QtCore/QElapsedTimer>
#include <QtCore/QFile>
#include <QtCore/QJsonDocument>
#include <QtCore/QMarginsF>
#include <QtCore/QRegularExpression>
#include <QtCore/QTextStream>
#include <QtCore/QUrlQuery>
#include <QtGui/QPageLayout>
#include <QtGui/QPageSize>
#include <QtWebEngineCore/QWebEngineProfile>
#include <QtWebEngineCore/QWebEngineUrlRequestJob>
#include <QtWebEngineCore/QWebEngineUrlScheme>
#include <QtWebEngineCore/QWebEngineUrlSchemeHandler>
#include <QtWebEngineWidgets/QWebEngineView>
#include <QtWidgets/QApplication>

#include <cmath>
#include <ctime>
#include <functional>
#include <memory>

using namespace Qt::StringLiterals;

namespace {

constexpr QSize pageSize(800, 600);
constexpr double pollInterval = 0.05; // seconds between two looks of the executor

/// A view in a window of its own, on the side of the library.
struct OurPage
{
    QWidget window;
    std::unique_ptr<VXWebView> view{VXWebView::createWebView(&window, false)};

    OurPage() { show(window, *view->nativeWidget()); }

    /// Qt's page below the library's view. What is compared on one page is not disturbed by where
    /// the kernel happens to run the processes of two.
    [[nodiscard]] QWebEnginePage& enginePage() const
    {
        return *qobject_cast<QWebEngineView*>(view->nativeWidget())->page();
    }

    static void show(QWidget& theWindow, QWidget& theView)
    {
        theWindow.resize(pageSize);
        theView.resize(pageSize);
        theWindow.show();
    }
};

/// The same with Qt alone.
struct BarePage
{
    QWidget window;
    QWebEngineView* const view = new QWebEngineView(&window); // the window's child

    BarePage() { OurPage::show(window, *view); }
};

double cpuSeconds()
{
    timespec now{};
    clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &now);
    return static_cast<double>(now.tv_sec) + static_cast<double>(now.tv_nsec) / 1e9;
}

void write(const QString& thePath, const QByteArray& theContent)
{
    QFile file(thePath);
    if (!file.open(QFile::WriteOnly) || file.write(theContent) != theContent.size())
        qFatal("cannot write %s", qPrintable(thePath));
}

QByteArray content(const QString& thePath)
{
    QFile file(thePath);
    return file.open(QFile::ReadOnly) ? file.readAll() : QByteArray();
}

QUrl writePage(VXBenchSession& theSession, const QByteArray& theHtml)
{
    const QString path = theSession.filePath(u"page.html"_s);
    write(path, theHtml);
    return QUrl::fromLocalFile(path);
}

/// About three pages of paper.
QByteArray receipt()
{
    return "<!DOCTYPE html><meta charset=utf-8><title>Beleg</title><h1>Beleg</h1>" +
           QByteArray("<p>Ein Fotobuch mit 26 Seiten, zwei Abz\xc3\xbcge und ein Kalender, "
                      "mit allem, was dazu geh\xc3\xb6rt.</p>")
               .repeated(100);
}

/// Without the only two things that differ from one print to the next.
QByteArray withoutDates(const QByteArray& thePdf)
{
    static const QRegularExpression date(uR"(\(D:[^)]*\))"_s);
    return QString::fromLatin1(thePdf).remove(date).toLatin1();
}

/// Runs a script with theRun(text, callback) again and again, each after the answer to the one
/// before. True when each answer is right.
template <typename Run>
bool chainScripts(int theCount, const Run& theRun)
{
    QEventLoop loop;
    int done = 0;
    bool isRight = true;
    std::function<void()> next;
    const auto take = [&](const QVariant& theAnswer) {
        isRight = isRight && theAnswer.toInt() == done + 1;
        if (++done == theCount)
            loop.quit();
        else
            next();
    };
    next = [&] { theRun(u"1 + %1"_s.arg(done), take); };
    return VXWebWait::run(loop, next) && isRight;
}

/// What one would write instead of the view's synchronous call.
QVariant bareAnswer(QWebEnginePage& thePage, const QString& theScript)
{
    QEventLoop loop;
    QVariant answer;
    VXWebWait::run(loop, [&] {
        thePage.runJavaScript(theScript, [&](const QVariant& theValue) {
            answer = theValue;
            loop.quit();
        });
    });
    return answer;
}

template <typename Answer>
bool areAnswersRight(int theCount, const Answer& theAnswer)
{
    for (int i = 0; i < theCount; ++i) {
        if (theAnswer(u"1 + %1"_s.arg(i)).toInt() != i + 1)
            return false;
    }
    return true;
}

// B15

void measureFirstLoad(VXBenchSession& theSession, const QUrl& thePage)
{
    std::unique_ptr<OurPage> our;
    std::unique_ptr<BarePage> bare;
    theSession.compare({.id = u"B15"_s,
                        .workload = u"a new view to its first load"_s,
                        .yardstick = u"bare view"_s,
                        .ours =
                            [&] {
                                our = std::make_unique<OurPage>();
                                return VXWebWait::load(*our->view, thePage);
                            },
                        .theirs =
                            [&] {
                                bare = std::make_unique<BarePage>();
                                return VXWebWait::load(*bare->view, thePage);
                            },
                        .check =
                            [&] {
                                const bool isRight = our ? our->view->title() == "Beleg"_L1
                                                         : bare->view->title() == "Beleg"_L1;
                                our.reset();
                                bare.reset();
                                return isRight;
                            },
                        .timeGoal = VXBenchGoal::noMoreThan(1.05),
                        .cpuGoal = {},
                        .memoryGoal = {}});
}

void measureRoundTrips(VXBenchSession& theSession, VXWebView& theOur, QWebEnginePage& theBare)
{
    const int count = theSession.isShort() ? 50 : 200;
    theSession.compare({.id = u"B15"_s,
                        .workload = u"script round trip, with a callback"_s,
                        .yardstick = u"bare view"_s,
                        .ours =
                            [&] {
                                return chainScripts(count, [&](const auto& theScript, auto& take) {
                                    theOur.runJavascriptAsync(theScript, take);
                                });
                            },
                        .theirs =
                            [&] {
                                return chainScripts(count, [&](const auto& theScript, auto& take) {
                                    theBare.runJavaScript(theScript, take);
                                });
                            },
                        .check = {},
                        .calls = count,
                        .timeGoal = VXBenchGoal::noMoreThan(1.05),
                        .cpuGoal = {},
                        .memoryGoal = {}});
    theSession.compare({.id = u"B15"_s,
                        .workload = u"script round trip, waiting"_s,
                        .yardstick = u"bare view and an event loop"_s,
                        .ours =
                            [&] {
                                return areAnswersRight(count, [&](const QString& theScript) {
                                    return theOur.runJavascriptSync(theScript);
                                });
                            },
                        .theirs =
                            [&] {
                                return areAnswersRight(count, [&](const QString& theScript) {
                                    return bareAnswer(theBare, theScript);
                                });
                            },
                        .check = {},
                        .calls = count,
                        .timeGoal = VXBenchGoal::noMoreThan(1.05),
                        .cpuGoal = {},
                        .memoryGoal = {}});
}

template <typename Start>
bool print(const QWebEnginePage& thePage, Start theStart)
{
    QEventLoop loop;
    bool isPrinted = false;
    QObject::connect(&thePage, &QWebEnginePage::pdfPrintingFinished, &loop,
                     [&](const QString&, bool theIsOk) {
                         isPrinted = theIsOk;
                         loop.quit();
                     });
    return VXWebWait::run(loop, theStart) && isPrinted;
}

void measurePdf(VXBenchSession& theSession, VXWebView& theOur, QWebEnginePage& theBare)
{
    const QString our = theSession.filePath(u"our.pdf"_s);
    const QString bare = theSession.filePath(u"bare.pdf"_s);
    const auto printOur = [&] { return print(theBare, [&] { theOur.saveContent(our); }); };
    const auto printBare = [&] {
        return print(theBare, [&] {
            theBare.printToPdf(bare, QPageLayout(QPageSize(QPageSize::A4), QPageLayout::Portrait,
                                                 QMarginsF(20, 20, 20, 20)));
        });
    };
    if (!printBare()) { // so that there is one to compare with
        theSession.report().addFailure(u"B15"_s, u"the bare view does not print"_s);
        return;
    }
    theSession.compare(
        {.id = u"B15"_s,
         .workload = u"PDF of three pages"_s,
         .yardstick = u"bare view"_s,
         .ours = printOur,
         .theirs = printBare,
         .check = [&] { return withoutDates(content(our)) == withoutDates(content(bare)); },
         .timeGoal = VXBenchGoal::noMoreThan(1.05),
         .cpuGoal = {},
         .memoryGoal = {}});
}

void measureView(VXBenchSession& theSession)
{
    const QUrl page = writePage(theSession, receipt());
    measureFirstLoad(theSession, page);

    OurPage our;
    if (!VXWebWait::load(*our.view, page)) {
        theSession.report().addFailure(u"B15"_s, u"the page does not load"_s);
        return;
    }
    measureRoundTrips(theSession, *our.view, our.enginePage());
    measurePdf(theSession, *our.view, our.enginePage());
}

// B16

/// Some hundred microseconds of work; the answer is theNumber.
QString busyScript(int theNumber)
{
    return u"(() => { let sum = 0; for (let i = 0; i < 100000; ++i) sum += i;"
           " return sum - 4999950000 + %1; })()"_s.arg(theNumber);
}

bool executeScripts(VXWebView& theView, int theCount)
{
    VXJavaScriptExecutor executor(&theView);
    for (int i = 0; i < theCount; ++i)
        executor.addScriptSource(busyScript(i));
    executor.execute();
    for (int i = 0; i < theCount; ++i) {
        if (executor.result(busyScript(i)).toInt() != i)
            return false;
    }
    return true;
}

/// All started at once, as the executor does.
bool runScripts(QWebEnginePage& thePage, int theCount)
{
    QEventLoop loop;
    int left = theCount;
    bool isRight = true;
    return VXWebWait::run(loop,
                          [&] {
                              for (int i = 0; i < theCount; ++i) {
                                  thePage.runJavaScript(
                                      busyScript(i), [&, i](const QVariant& theAnswer) {
                                          isRight = isRight && theAnswer.toInt() == i;
                                          if (--left == 0)
                                              loop.quit();
                                      });
                              }
                          }) &&
           isRight;
}

struct Times
{
    QList<double> wall; // seconds
    QList<double> cpu;
};

template <typename Task>
bool take(Times& theTimes, bool theCounts, Task theTask)
{
    const double cpuBefore = cpuSeconds();
    QElapsedTimer timer;
    timer.start();
    const bool isSound = theTask();
    if (theCounts) {
        theTimes.wall.append(static_cast<double>(timer.nsecsElapsed()) / 1e9);
        theTimes.cpu.append(cpuSeconds() - cpuBefore);
    }
    return isSound;
}

void addExecutorRow(VXBenchSession& theSession, int theCount, const QString& theMetric,
                    const QString& theYardstick, QList<double> theOurs, QList<double> theTheirs,
                    const VXBenchGoal& theGoal)
{
    for (QList<double>* const times : {&theOurs, &theTheirs}) {
        for (double& seconds : *times)
            seconds *= 1000;
    }
    theSession.report().add(
        {.id = u"B16"_s,
         .workload = theCount == 1 ? u"1 script"_s : u"%1 scripts"_s.arg(theCount),
         .metric = theMetric,
         .unit = u"ms"_s,
         .yardstick = theYardstick,
         .ours = theOurs,
         .theirs = theTheirs,
         .goal = theGoal,
         .note = {}});
}

void measureBatch(VXBenchSession& theSession, VXWebView& theOur, QWebEnginePage& theBare,
                  int theCount)
{
    Times our;
    Times bare;
    for (int i = -1; i < theSession.rounds(); ++i) {
        if (!take(our, i >= 0, [&] { return executeScripts(theOur, theCount); }) ||
            !take(bare, i >= 0, [&] { return runScripts(theBare, theCount); })) {
            theSession.report().addFailure(u"B16"_s,
                                           u"wrong answers to %1 scripts"_s.arg(theCount));
            return;
        }
    }
    QList<double> bound = bare.wall;
    for (double& seconds : bound)
        seconds += pollInterval;
    addExecutorRow(theSession, theCount, u"wall time"_s, u"50 ms and the bare scripts"_s, our.wall,
                   bound, VXBenchGoal::noMoreThan(1));
    addExecutorRow(theSession, theCount, u"CPU time"_s, u"the bare scripts"_s, our.cpu, bare.cpu,
                   {});
}

void measureExecutor(VXBenchSession& theSession)
{
    const QUrl page = writePage(theSession, "<!DOCTYPE html><title>Leer</title>");
    OurPage our;
    if (!VXWebWait::load(*our.view, page)) {
        theSession.report().addFailure(u"B16"_s, u"the page does not load"_s);
        return;
    }
    for (const int count : {1, 10, 100})
        measureBatch(theSession, *our.view, our.enginePage(), count);
}

// B17

constexpr int schemeFiles = 500;
constexpr const char* bareScheme = "bare";
constexpr int schemeFileSize = 20 * 1024;

/// A page that takes in the scripts file0.js to file499.js, each handing over a long text. The
/// number makes their addresses new ones, so that no memory of the engine's answers for them.
QByteArray schemePage(int theNumber)
{
    QByteArray html = "<!DOCTYPE html><meta charset=utf-8><title>Dateien</title><script>"
                      "const texts = [];"
                      "function sum() { let s = 0;"
                      " for (const t of texts) for (let i = 0; i < t.length; ++i)"
                      " s = (s * 31 + t.charCodeAt(i)) | 0; return s; }</script>\n";
    for (int i = 0; i < schemeFiles; ++i)
        html += "<script defer src=\"file" + QByteArray::number(i) + ".js?" +
                QByteArray::number(theNumber) + "\"></script>\n";
    return html;
}

/// Writes the files and returns what the page's sum() has to be.
qint32 writeSchemeFiles(const QString& theFolder)
{
    quint32 sum = 0;
    for (int i = 0; i < schemeFiles; ++i) {
        const QByteArray head = "texts[" + QByteArray::number(i) + "]='";
        const QByteArray bytes = VXBenchSession::randomBytes(schemeFileSize).toBase64();
        const QByteArray text = QByteArray::number(i) + bytes.left(schemeFileSize - 40);
        QByteArray script = head + text + "';";
        script += QByteArray(schemeFileSize - script.size(), ' ');
        write(theFolder + u"/file%1.js"_s.arg(i), script);
        for (const char letter : text)
            sum = sum * 31 + static_cast<uchar>(letter);
    }
    return static_cast<qint32>(sum);
}

/// Qt's way alone: a file of one folder, by name.
class BareHandler : public QWebEngineUrlSchemeHandler
{
public:
    explicit BareHandler(const QString& theFolder)
        : myFolder(theFolder)
    {
    }

    void requestStarted(QWebEngineUrlRequestJob* theJob) override
    {
        const QString path = theJob->requestUrl().path();
        auto* const file = new QFile(myFolder + path, theJob); // goes with the job
        theJob->reply(path.endsWith(".js"_L1) ? "application/javascript" : "text/html", file);
    }

private:
    const QString myFolder;
};

/// A view that loads the page again and again, each time under a new address.
class FilesPage
{
public:
    FilesPage(const QString& theFolder, const QUrl& theUrl)
        : myFolder(theFolder)
        , myUrl(theUrl)
    {
        prepare();
    }

    bool load() { return VXWebWait::load(*myPage.view, myUrl); }

    /// Whether all files came as they are.
    bool hasSum(qint32 theSum) const
    {
        return myPage.view->runJavascriptSync(u"sum()"_s).toDouble() == theSum;
    }

    /// To be called between two loads.
    void prepare()
    {
        ++myNumber;
        const QString name = u"/%1-%2.html"_s.arg(myUrl.scheme(), QString::number(myNumber));
        write(myFolder + name, schemePage(myNumber));
        myUrl.setPath(myUrl.path().section(u'/', 0, -2) + name);
    }

private:
    OurPage myPage;
    const QString myFolder;
    QUrl myUrl;
    int myNumber = 0;
};

void compareSchemes(VXBenchSession& theSession, const QString& theYardstick, FilesPage& theOur,
                    FilesPage& theOther, qint32 theSum, const VXBenchGoal& theGoal)
{
    FilesPage* last = nullptr;
    const auto load = [&last](FilesPage& thePage) {
        last = &thePage;
        return thePage.load();
    };
    theSession.compare({.id = u"B17"_s,
                        .workload = u"page with 500 files of 20 KiB"_s,
                        .yardstick = theYardstick,
                        .ours = [&] { return load(theOur); },
                        .theirs = [&] { return load(theOther); },
                        .check =
                            [&] {
                                const bool isRight = last->hasSum(theSum);
                                last->prepare();
                                return isRight;
                            },
                        .calls = schemeFiles,
                        .timeGoal = theGoal,
                        .cpuGoal = {},
                        .memoryGoal = {}});
}

void measureScheme(VXBenchSession& theSession)
{
    const QString folder = theSession.filePath(u"html"_s);
    QDir().mkpath(folder);
    const qint32 sum = writeSchemeFiles(folder);
    VXDirectoryConfig::instance()->setRoot(VXDirectoryConfig::Root::StartScreen, folder);
    BareHandler handler(folder);
    QWebEngineProfile::defaultProfile()->installUrlSchemeHandler(bareScheme, &handler);

    // Each side keeps to one view, because a change of the scheme changes the page's process.
    FilesPage our(folder, QUrl(u"tov://localhost/x"_s));
    FilesPage disk(folder, QUrl::fromLocalFile(folder + "/x"_L1));
    FilesPage bare(folder, QUrl(u"bare://localhost/x"_s));
    compareSchemes(theSession, u"the same from file:"_s, our, disk, sum,
                   VXBenchGoal::noMoreThan(0.6));
    compareSchemes(theSession, u"a bare scheme handler"_s, our, bare, sum, {});
    QWebEngineProfile::defaultProfile()->removeUrlSchemeHandler(&handler);
}

// B18

/// One page with two channels, so that the page's side is the same in everything.
QByteArray channelPage()
{
    return R"(<!DOCTYPE html><meta charset=utf-8><title>Kanal</title>
<script src="qrc:///qtwebchannel/qwebchannel.js"></script>
<script src="qrc:///VXWebCommunication/webmessage.js"></script>
<script>
const query = new URLSearchParams(location.search);
let ours = null;
let bare = null;
function open(url, take) {
    const way = createTransport(url, query.get('webChannelToken'));
    way.onopen = () => new QWebChannel(way, channel => take(channel.objects.peer));
    openTransport(way);
}
open(query.get('webChannelBaseUrl'), peer => {
    ours = peer;
    open(query.get('bareUrl'), other => { bare = other; bare.ready(); });
});
function oneByOne(peer, count) {
    let sum = 0;
    const call = i => i === count ? peer.done(sum)
                                  : peer.twice(i, answer => { sum += answer; call(i + 1); });
    call(0);
}
function allAtOnce(peer, count) {
    let sum = 0;
    let left = count;
    for (let i = 0; i < count; ++i) {
        peer.twice(i, answer => { sum += answer; if (--left === 0) peer.done(sum); });
    }
}
</script>)";
}

bool openChannels(VXWebView& theView, const VXBenchPeer& thePeer, const QUrl& thePage)
{
    QEventLoop loop;
    QObject::connect(&thePeer, &VXBenchPeer::pageIsReady, &loop, &QEventLoop::quit);
    return VXWebWait::run(loop, [&] { theView.setUrl(thePage); });
}

/// The page calls thePeer that often, and each answer has to be right.
bool call(VXWebView& theView, const VXBenchPeer& thePeer, const QString& theScript, int theCount)
{
    QEventLoop loop;
    double sum = 0;
    QObject::connect(&thePeer, &VXBenchPeer::pageIsDone, &loop, [&](double theSum) {
        sum = theSum;
        loop.quit();
    });
    const bool isDone = VXWebWait::run(loop, [&] { theView.runJavascriptAsync(theScript, {}); });
    return isDone && sum == static_cast<double>(theCount) * (theCount - 1);
}

void measureChannel(VXBenchSession& theSession)
{
    OurPage page;
    VXBenchPeer ourPeer;
    VXBenchPeer barePeer;
    const std::unique_ptr<VXAbstractCommunication> communication(
        page.view->createCommunication(u"bench"_s));
    communication->registerObject(u"peer"_s, &ourPeer);
    VXBareChannel bareChannel;
    bareChannel.channel().registerObject(u"peer"_s, &barePeer);
    QUrlQuery query = communication->addServerParameter({});
    query.addQueryItem(u"bareUrl"_s, bareChannel.serverUrl().toString());
    QUrl url = writePage(theSession, channelPage());
    url.setQuery(query);
    if (!openChannels(*page.view, barePeer, url)) {
        theSession.report().addFailure(u"B18"_s, u"the page does not find its channels"_s);
        return;
    }
    const int count = theSession.isShort() ? 200 : 1000;
    for (const auto& [function, how] : {std::pair(u"oneByOne"_s, u"each after the answer before"_s),
                                        {u"allAtOnce"_s, u"all at once"_s}}) {
        const QString script = u"%1(%2, %3)"_s.arg(function, u"%1"_s, QString::number(count));
        theSession.compare(
            {.id = u"B18"_s,
             .workload = u"%1 calls with answer, %2"_s.arg(QString::number(count), how),
             .yardstick = u"bare QWebChannel"_s,
             .ours = [&] { return call(*page.view, ourPeer, script.arg(u"ours"_s), count); },
             .theirs = [&] { return call(*page.view, barePeer, script.arg(u"bare"_s), count); },
             .check = {},
             .calls = count,
             .timeGoal = VXBenchGoal::noMoreThan(1.10),
             .cpuGoal = {},
             .memoryGoal = {}});
    }
}

void printTimes(const QElapsedTimer& theTimer)
{
    QTextStream(stdout) << theTimer.nsecsElapsed() << ' ' << std::llround(cpuSeconds() * 1e9)
                        << '\n';
}

int loadOurs(const QElapsedTimer& theTimer, const QUrl& thePage)
{
    VXInitializer::instance()->runSetup(VXInitializerOption::Normal);
    OurPage page;
    if (!VXWebWait::load(*page.view, thePage))
        return 1;
    printTimes(theTimer);
    return 0;
}

int loadBare(const QElapsedTimer& theTimer, const QUrl& thePage)
{
    qputenv("QTWEBENGINE_CHROMIUM_FLAGS", "--no-sandbox");
    BarePage page;
    if (!VXWebWait::load(*page.view, thePage))
        return 1;
    printTimes(theTimer);
    return 0;
}

} // namespace

int VXWebRun::startToFirstLoad(int& theArgumentCount, char** theArguments, const QString& theSide,
                               const QString& thePage)
{
    QElapsedTimer timer;
    timer.start();
    const QApplication application(theArgumentCount, theArguments);
    const QUrl page = QUrl::fromLocalFile(thePage);
    return theSide == "ours"_L1 ? loadOurs(timer, page) : loadBare(timer, page);
}

int VXWebRun::measure(const QStringList& theWords)
{
    VXBenchSession session(theWords.value(2).toInt(), theWords.value(3) == "short"_L1);
    VXBenchSession::pin(-1);           // the engine is made of many processes
    if (theWords.value(1) == "B17"_L1) // before anybody touches the engine
        QWebEngineUrlScheme::registerScheme(QWebEngineUrlScheme(bareScheme));
    VXInitializer::instance()->runSetup(VXInitializerOption::Normal);
    const QString id = theWords.value(1);
    if (id == "B15"_L1)
        measureView(session);
    else if (id == "B16"_L1)
        measureExecutor(session);
    else if (id == "B17"_L1)
        measureScheme(session);
    else if (id == "B18"_L1)
        measureChannel(session);
    QTextStream(stdout) << QJsonDocument(session.report().json()).toJson(QJsonDocument::Compact)
                        << '\n';
    return 0;
}
