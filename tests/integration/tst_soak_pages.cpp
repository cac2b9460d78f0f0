#include "VXHoldings.h"
#include "VXNginxServer.h"
#include "VXProbe.h"
#include "VXWebTest.h"

#include <QtWebEngineWidgets/QWebEngineView>
#include <QtWidgets/QApplication>

#include <functional>
#include <memory>

#include <sys/resource.h>

using namespace Qt::StringLiterals;

namespace {

constexpr int warmUpCount = 150;
constexpr int pageCount = 500;
constexpr rlim_t descriptorLimit = 256;
constexpr qint64 mostGrowth = 2 * 1024 * 1024; // bytes

constexpr auto urlVariable = "VX_PROBE_URL";
constexpr auto namesVariable = "VX_PROBE_NAMES";

/// Loads a page; false when that does not end.
using Load = std::function<bool(const QUrl& theUrl)>;

/// Prints what the process holds after many loads more than before: KiB, descriptors, threads.
int measure(const Load& theLoad)
{
    const rlimit limit{descriptorLimit, descriptorLimit};
    if (::setrlimit(RLIMIT_NOFILE, &limit) != 0)
        return 1;
    const QUrl server(qEnvironmentVariable(urlVariable));
    const QStringList names = qEnvironmentVariable(namesVariable).split(u' ');
    int turn = 0;
    const auto load = [&](int count) {
        for (; count > 0; --count, ++turn) {
            if (!theLoad(server.resolved(QUrl(names.at(turn % names.size())))))
                return false;
        }
        return true;
    };
    if (!load(warmUpCount))
        return 2;
    const VXHoldings before = VXHoldings::now();
    if (!load(pageCount))
        return 3;

    // Threads of the engine end when they have had nothing to do for a while.
    VXHoldings growth;
    (void)QTest::qWaitFor(
        [&] {
            growth = VXHoldings::now().since(before);
            return growth.descriptors <= 0 && growth.threads <= 0;
        },
        60000);
    VXProbe::print(QString::number(growth.memory / 1024));
    VXProbe::print(QString::number(growth.descriptors));
    VXProbe::print(QString::number(growth.threads));
    return 0;
}

/// The library's view.
int pages()
{
    const VXWebTest::Page page;
    return measure([&page](const QUrl& theUrl) {
        QSignalSpy finished(page.view.get(), &VXWebView::loadFinished);
        page.view->setUrl(theUrl);
        return finished.wait(30000);
    });
}

/// The engine without the library, for comparison.
int barePages()
{
    QWebEngineView view;
    return measure([&view](const QUrl& theUrl) {
        QSignalSpy finished(&view, &QWebEngineView::loadFinished);
        view.setUrl(theUrl);
        return finished.wait(30000);
    });
}

} // namespace

/// What 500 pages leave behind in our process: nothing. Runs with 256 descriptors. The pages'
/// processes belong to the engine and end with it.
class tst_soak_pages : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void pagesLeaveNothing_data();
    void pagesLeaveNothing();
};

void tst_soak_pages::pagesLeaveNothing_data()
{
    QTest::addColumn<QString>("probe");
    QTest::addColumn<QByteArray>("names");

    const QByteArray pages = "/first.html /second.html /first.html?again /missing.html";
    QTest::newRow("the engine alone") << u"barePages"_s << pages;
    QTest::newRow("the library's view") << u"pages"_s << pages;
    // Each is refused while the page goes on to the next.
    QTest::newRow("downloads in the library's view") << u"pages"_s << "/file.bin /missing.html"_ba;
}

void tst_soak_pages::pagesLeaveNothing()
{
    QFETCH(QString, probe);
    QFETCH(QByteArray, names);
    qputenv(namesVariable, names);
    VXTestCertificates certificates;
    VXNginxServer server(certificates.leaf());
    const QByteArray body = "<script src='work.js'></script><p>text</p>"_ba.repeated(20);
    server.addDocument(u"first.html"_s, "<title>first</title>" + body);
    server.addDocument(u"second.html"_s, "<title>second</title>" + body);
    server.addDocument(u"file.bin"_s, QByteArray(1000, '\x01'));
    server.addDocument(u"work.js"_s, "document.title += '.'; console.log(document.title);");
    QVERIFY2(server.start(), qPrintable(server.errorString()));
    qputenv(urlVariable, server.url(u"/"_s).toEncoded());

    const QStringList lines = VXProbe::run(probe, std::chrono::minutes(6));
    QVERIFY2(lines.size() == 3, qPrintable(lines.join(u'\n')));
    qInfo("%d loads: memory %+lld KiB, descriptors %+lld, threads %+lld", pageCount,
          lines.at(0).toLongLong(), lines.at(1).toLongLong(), lines.at(2).toLongLong());
    QVERIFY(lines.at(1).toInt() <= 0);
    QVERIFY(lines.at(2).toInt() <= 0);
    QVERIFY(lines.at(0).toLongLong() * 1024 <= mostGrowth);
}

VX_PROBE_TEST_MAIN(QApplication, tst_soak_pages, {u"pages"_s, pages}, {u"barePages"_s, barePages})

#include "tst_soak_pages.moc"
