#include <VXNetworking/VXOAuth2LoginDialog.h>

#include "VXDialogVisitor.h"
#include "VXRawPeer.h"
#include "VXTestMain.h"
#include "VXWebTest.h"

#include <QtCore/QElapsedTimer>
#include <QtCore/QMetaMethod>
#include <QtCore/QSemaphore>
#include <QtCore/QTimer>
#include <QtCore/QUrlQuery>
#include <QtWebEngineWidgets/QWebEngineView>
#include <QtWidgets/QApplication>
#include <QtWidgets/QCheckBox>
#include <QtWidgets/QDialogButtonBox>
#include <QtWidgets/QGridLayout>
#include <QtWidgets/QLabel>
#include <QtWidgets/QLineEdit>
#include <QtWidgets/QMessageBox>
#include <QtWidgets/QProgressBar>
#include <QtWidgets/QProgressDialog>
#include <QtWidgets/QPushButton>

#include <limits>
#include <memory>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

/// A dialog whose clock can be put forward.
class Dialog : public VXOAuth2LoginDialog
{
public:
    explicit Dialog(const QUrl& theUrl, OAuth2LoginDialogOptions theOptions = {})
        : VXOAuth2LoginDialog(theUrl, u"Tessarim"_s, theOptions)
    {
    }

    void handleLoadFinished(bool theIsOk) override
    {
        loads << theIsOk;
        VXOAuth2LoginDialog::handleLoadFinished(theIsOk);
    }
    void handleTitleChanged(const QString& theTitle) override { titles << theTitle; }
    void handleUrlChanged(const QUrl& theUrl) override
    {
        urls << theUrl;
        VXOAuth2LoginDialog::handleUrlChanged(theUrl);
    }
    qint64 elapsedMilliseconds() const override
    {
        looks << clock.elapsed();
        return time.value_or(VXOAuth2LoginDialog::elapsedMilliseconds());
    }

    QList<bool> loads;
    QStringList titles;
    QList<QUrl> urls;
    std::optional<qint64> time; // what the stopwatch is made to show
    mutable QList<qint64> looks;
    QElapsedTimer clock;
};

VXRawAnswer page(const QByteArray& theTitle)
{
    return VXRawAnswer::http(200, "<title>" + theTitle + "</title><p>Text",
                             {"Content-Type: text/html; charset=utf-8"});
}

QSemaphore heldPages; // one for each page of "/held" that may go out

/// "/silent" never answers, "/half" not all of it, "/late" after a while, "/held" when the test
/// lets it, "/redirect" leads to "/caught", every other path shows its own name as title.
VXRawAnswer answerTo(const VXRawRequest& theRequest)
{
    const QByteArray path = theRequest.target();
    if (path.startsWith("/silent"))
        return VXRawAnswer().stall();
    if (path.startsWith("/half"))
        return VXRawAnswer()
            .send("HTTP/1.1 200 OK\r\nContent-Type: text/html\r\nContent-Length: 5000\r\n\r\n"
                  "<title>half</title><p>" +
                  QByteArray(2000, 'x'))
            .stall();
    if (path.startsWith("/late"))
        return VXRawAnswer().pause(1500ms).send(page("late").steps().constFirst().bytes);
    if (path.startsWith("/held"))
        heldPages.tryAcquire(1, 60'000);
    if (path.startsWith("/redirect"))
        return VXRawAnswer::http(302, {}, {"Location: /caught?code=a%2Bb&state=s"});
    return page(path.sliced(1));
}

template <typename Widget>
QList<Widget*> visibleOnes()
{
    QList<Widget*> found;
    for (QWidget* widget : QApplication::topLevelWidgets()) {
        auto* const match = qobject_cast<Widget*>(widget);
        if (match != nullptr && match->isVisible())
            found << match;
    }
    return found;
}

QPushButton* buttonOf(const QDialog& theDialog, QDialogButtonBox::StandardButton theButton)
{
    return theDialog.findChild<QDialogButtonBox*>()->button(theButton);
}

QString shownAddress(const QDialog& theDialog)
{
    return theDialog.findChild<QLineEdit*>(u"urlEdit"_s)->text();
}

/// Ends a message that a test does not expect, so that it fails and does not hang.
void endMessage(QDialog* theDialog)
{
    if (qobject_cast<QMessageBox*>(theDialog) != nullptr)
        theDialog->accept();
}

using Options = VXOAuth2LoginDialog::OAuth2LoginDialogOptions;
constexpr auto Save = VXOAuth2LoginDialog::SaveLoginDataOption;
constexpr auto Close = VXOAuth2LoginDialog::CloseButtonOption;
constexpr auto Cancel = VXOAuth2LoginDialog::CancelButtonOption;

} // namespace

Q_DECLARE_METATYPE(VXOAuth2LoginDialog::OAuth2LoginDialogOptions)

class tst_VXOAuth2LoginDialog : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();

    // what it is made of
    void methodsHaveTheirOrder();
    void optionsHaveTheirNumbers();
    void sizeIs1024x720();
    void hasNoParent();
    void optionsDecideOnTheParts_data();
    void optionsDecideOnTheParts();
    void partsHaveTheirPlaces();

    // the page
    void addressBarFollowsThePage();
    void addressBarCanBeHidden();
    void titleFollowsThePage();
    void hooksSeeEverything();
    void stopEndsTheLoading();

    // how it ends
    void closeButtonAccepts();
    void cancelButtonRejects();
    void withoutButtonsTheWindowClosesIt();
    void acceptTimerTakes250Milliseconds();
    void rejectTimerTakes250Milliseconds();
    void codeOfTheRedirectIsCaught();
    void saveLoginDataFollowsTheBox();
    void saveLoginDataNeedsItsOption();

    // the watch
    void watchLooksEvery500Milliseconds();
    void pageWithinFourSecondsShowsNoProgress();
    void progressComesAfterFourSeconds();
    void timeDecidesWhatIsShown_data();
    void timeDecidesWhatIsShown();
    void progressGoesWithThePage();
    void cancelledProgressRejects();
    void messageComesOnceAndTheDialogGoes();
    void watchRestsWhileTheMessageIsOpen();
    void failedPageEndsTheWatch();
    void laterPagesAreNotWatched();
    void loadedPageIsNotWatched();
    void closedDialogWatchesNoMore();
    void timeoutWithoutExecDoesNothing();
    void ownerMayDeleteItInTheMiddle();

private:
    VXRawPeer myPeer;
};

void tst_VXOAuth2LoginDialog::initTestCase()
{
    myPeer.setHandler(answerTo);
}

void tst_VXOAuth2LoginDialog::methodsHaveTheirOrder()
{
    const QMetaObject& type = VXOAuth2LoginDialog::staticMetaObject;
    QList<QByteArray> methods;
    for (int i = type.methodOffset(); i < type.methodCount(); ++i)
        methods << type.method(i).methodSignature();
    const QList<QByteArray> expected{
        "urlHasChanged(QUrl)",      "setUrlBarVisible(bool)",      "exec()",
        "handleLoadFinished(bool)", "handleTitleChanged(QString)", "handleUrlChanged(QUrl)",
        "handleTimeout()",          "setAccessCode(QString)",      "stopLoading()"};
    QCOMPARE(methods, expected);
}

void tst_VXOAuth2LoginDialog::optionsHaveTheirNumbers()
{
    QCOMPARE(int{VXOAuth2LoginDialog::SaveLoginDataOption}, 1);
    QCOMPARE(int{VXOAuth2LoginDialog::CloseButtonOption}, 2);
    QCOMPARE(int{VXOAuth2LoginDialog::CancelButtonOption}, 4);
}

void tst_VXOAuth2LoginDialog::sizeIs1024x720()
{
    const Dialog dialog(myPeer.url(u"/page"_s));
    QCOMPARE(dialog.size(), QSize(1024, 720));
}

void tst_VXOAuth2LoginDialog::hasNoParent()
{
    QWidget window;
    window.show();
    const Dialog dialog(myPeer.url(u"/page"_s));
    QCOMPARE(dialog.parentWidget(), nullptr);
}

void tst_VXOAuth2LoginDialog::optionsDecideOnTheParts_data()
{
    QTest::addColumn<Options>("options");

    QTest::newRow("none") << Options();
    QTest::newRow("save") << Options(Save);
    QTest::newRow("close") << Options(Close);
    QTest::newRow("cancel") << Options(Cancel);
    QTest::newRow("close and cancel") << (Close | Cancel);
    QTest::newRow("all") << (Save | Close | Cancel);
}

void tst_VXOAuth2LoginDialog::optionsDecideOnTheParts()
{
    QFETCH(Options, options);
    const Dialog dialog(myPeer.url(u"/page"_s), options);

    const auto* const box = dialog.findChild<QCheckBox*>();
    QCOMPARE(box != nullptr, options.testFlag(Save));
    if (box != nullptr) {
        QCOMPARE(box->text(),
                 u"Autorisierung speichern und beim nächsten Mal automatisch anmelden"_s);
        QVERIFY(!box->isChecked());
    }
    const auto* const close = buttonOf(dialog, QDialogButtonBox::Close);
    QCOMPARE(close != nullptr, options.testFlag(Close));
    if (close != nullptr)
        QCOMPARE(close->text(), u"Schließen"_s);
    const auto* const cancel = buttonOf(dialog, QDialogButtonBox::Cancel);
    QCOMPARE(cancel != nullptr, options.testFlag(Cancel));
    if (cancel != nullptr) {
        QCOMPARE(cancel->text(), u"Abbrechen"_s);
        QVERIFY(!cancel->autoDefault());
    }
}

void tst_VXOAuth2LoginDialog::partsHaveTheirPlaces()
{
    const Dialog dialog(myPeer.url(u"/page"_s), Save | Close);
    auto* const layout = qobject_cast<QGridLayout*>(dialog.layout());
    const auto placeOf = [layout](QWidget* theWidget) {
        int row = -1;
        int column = -1;
        int rows = 0;
        int columns = 0;
        layout->getItemPosition(layout->indexOf(theWidget), &row, &column, &rows, &columns);
        return QList<int>{row, column, rows, columns};
    };
    QCOMPARE(placeOf(dialog.findChild<QLineEdit*>(u"urlEdit"_s)->parentWidget()),
             (QList<int>{0, 0, 1, 2}));
    QCOMPARE(placeOf(dialog.findChild<QWebEngineView*>()), (QList<int>{1, 0, 1, 2}));
    QCOMPARE(placeOf(dialog.findChild<QCheckBox*>()), (QList<int>{2, 1, 1, 1}));
    QCOMPARE(placeOf(dialog.findChild<QDialogButtonBox*>()), (QList<int>{3, 1, 1, 1}));
}

void tst_VXOAuth2LoginDialog::addressBarFollowsThePage()
{
    Dialog dialog(myPeer.url(u"/redirect"_s));
    QSignalSpy changed(&dialog, &VXOAuth2LoginDialog::urlHasChanged);
    QTRY_COMPARE(dialog.url().path(), u"/caught"_s);
    QTRY_COMPARE(shownAddress(dialog), myPeer.url(u"/caught?code=a%2Bb&state=s"_s).toString());
    QVERIFY(!changed.isEmpty());
    QCOMPARE(changed.constLast().constFirst().toUrl(), dialog.url());
}

void tst_VXOAuth2LoginDialog::addressBarCanBeHidden()
{
    Dialog dialog(myPeer.url(u"/page"_s));
    dialog.show();
    const QWidget* const bar = dialog.findChild<QLineEdit*>(u"urlEdit"_s)->parentWidget();
    QVERIFY(bar->isVisible());
    Q_EMIT dialog.setUrlBarVisible(false);
    QVERIFY(!bar->isVisible());
    Q_EMIT dialog.setUrlBarVisible(true);
    QVERIFY(bar->isVisible());
}

void tst_VXOAuth2LoginDialog::titleFollowsThePage()
{
    const Dialog dialog(myPeer.url(u"/Anmeldung"_s));
    QTRY_COMPARE(dialog.windowTitle(), u"Anmeldung"_s);
    QCOMPARE(dialog.title(), u"Anmeldung"_s);
}

void tst_VXOAuth2LoginDialog::hooksSeeEverything()
{
    const Dialog dialog(myPeer.url(u"/redirect"_s));
    QTRY_COMPARE(dialog.loads, QList<bool>{true});
    QVERIFY(dialog.urls.contains(myPeer.url(u"/caught?code=a%2Bb&state=s"_s)));
    QTRY_VERIFY(dialog.titles.contains(u"caught?code=a%2Bb&state=s"_s));
}

void tst_VXOAuth2LoginDialog::stopEndsTheLoading()
{
    Dialog dialog(myPeer.url(u"/half"_s));
    QTRY_VERIFY(dialog.titles.contains(u"half"_s)); // the rest never comes
    QCOMPARE(dialog.loads, QList<bool>());
    dialog.stopLoading();
    QTRY_COMPARE(dialog.loads, QList<bool>{false});
}

void tst_VXOAuth2LoginDialog::closeButtonAccepts()
{
    Dialog dialog(myPeer.url(u"/page"_s), Close);
    const VXDialogVisitor user([](QDialog* theDialog) {
        QTest::mouseClick(buttonOf(*theDialog, QDialogButtonBox::Close), Qt::LeftButton);
    });
    QCOMPARE(dialog.exec(), int{QDialog::Accepted});
    QCOMPARE(dialog.accessCode(), QString());
}

void tst_VXOAuth2LoginDialog::cancelButtonRejects()
{
    Dialog dialog(myPeer.url(u"/page"_s), Cancel);
    const VXDialogVisitor user([](QDialog* theDialog) {
        QTest::mouseClick(buttonOf(*theDialog, QDialogButtonBox::Cancel), Qt::LeftButton);
    });
    QCOMPARE(dialog.exec(), int{QDialog::Rejected});
}

void tst_VXOAuth2LoginDialog::withoutButtonsTheWindowClosesIt()
{
    Dialog dialog(myPeer.url(u"/page"_s));
    const VXDialogVisitor user([](QDialog* theDialog) { theDialog->close(); });
    QCOMPARE(dialog.exec(), int{QDialog::Rejected});
}

void tst_VXOAuth2LoginDialog::acceptTimerTakes250Milliseconds()
{
    Dialog dialog(myPeer.url(u"/page"_s));
    QElapsedTimer clock;
    const VXDialogVisitor user([&](QDialog*) {
        clock.start();
        dialog.startAcceptTimer();
    });
    QCOMPARE(dialog.exec(), int{QDialog::Accepted});
    QVERIFY2(clock.elapsed() >= 235, QByteArray::number(clock.elapsed())); // coarse timer
}

void tst_VXOAuth2LoginDialog::rejectTimerTakes250Milliseconds()
{
    Dialog dialog(myPeer.url(u"/page"_s));
    QElapsedTimer clock;
    const VXDialogVisitor user([&](QDialog*) {
        clock.start();
        dialog.startRejectTimer();
    });
    QCOMPARE(dialog.exec(), int{QDialog::Rejected});
    QVERIFY2(clock.elapsed() >= 235, QByteArray::number(clock.elapsed()));
}

void tst_VXOAuth2LoginDialog::codeOfTheRedirectIsCaught()
{
    Dialog dialog(myPeer.url(u"/redirect"_s), Save);
    connect(&dialog, &VXOAuth2LoginDialog::urlHasChanged, &dialog, [&dialog](const QUrl& theUrl) {
        if (theUrl.path() != "/caught"_L1)
            return;
        dialog.setAccessCode(QUrlQuery(theUrl).queryItemValue(u"code"_s, QUrl::FullyDecoded));
        dialog.startAcceptTimer();
    });
    QCOMPARE(dialog.exec(), int{QDialog::Accepted});
    QCOMPARE(dialog.accessCode(), u"a+b"_s);
    QVERIFY(!dialog.saveLoginData());
}

void tst_VXOAuth2LoginDialog::saveLoginDataFollowsTheBox()
{
    const Dialog dialog(myPeer.url(u"/page"_s), Save);
    auto* const box = dialog.findChild<QCheckBox*>();
    box->setChecked(true);
    QVERIFY(dialog.saveLoginData());
    box->setChecked(false);
    QVERIFY(!dialog.saveLoginData());
}

void tst_VXOAuth2LoginDialog::saveLoginDataNeedsItsOption()
{
    Dialog dialog(myPeer.url(u"/page"_s), Close | Cancel);
    auto* const box = new QCheckBox(&dialog);
    box->setChecked(true);
    QVERIFY(!dialog.saveLoginData());
}

void tst_VXOAuth2LoginDialog::watchLooksEvery500Milliseconds()
{
    Dialog dialog(myPeer.url(u"/silent"_s));
    dialog.time = 0;
    dialog.clock.start();
    QTimer timer;
    connect(&timer, &QTimer::timeout, &dialog, [&dialog] {
        if (dialog.looks.size() >= 5)
            dialog.reject();
    });
    timer.start(20);
    dialog.exec();
    // Coarse timers come up to 5 % early, and a busy machine lets some come late, but not all.
    QVERIFY2(dialog.looks.at(4) >= 5 * 450, QByteArray::number(dialog.looks.at(4)));
    qint64 shortest = std::numeric_limits<qint64>::max();
    for (qsizetype i = 1; i < 5; ++i)
        shortest = qMin(shortest, dialog.looks.at(i) - dialog.looks.at(i - 1));
    QVERIFY2(shortest < 900, QByteArray::number(shortest));
}

void tst_VXOAuth2LoginDialog::pageWithinFourSecondsShowsNoProgress()
{
    Dialog dialog(myPeer.url(u"/late"_s));
    dialog.time = 4000; // however long this machine takes
    const VXDialogVisitor user(endMessage);
    QTimer::singleShot(0, &dialog, [&dialog] {
        QTRY_COMPARE(dialog.loads, QList<bool>{true});
        dialog.time = 5000; // had the watch gone on, it would show the progress
        QTimer::singleShot(1200, &dialog, &QDialog::reject);
    });
    dialog.exec();
    QVERIFY(!dialog.looks.isEmpty());
    QCOMPARE(user.count(), 1); // the login itself
}

void tst_VXOAuth2LoginDialog::progressComesAfterFourSeconds()
{
    Dialog dialog(myPeer.url(u"/silent"_s));
    QElapsedTimer clock;
    qint64 shownAfter = 0;
    const VXDialogVisitor user([&](QDialog* theDialog) {
        if (qobject_cast<QProgressDialog*>(theDialog) == nullptr)
            return;
        shownAfter = clock.elapsed();
        QCOMPARE(theDialog->parentWidget(), &dialog);
        QCOMPARE(theDialog->findChild<QLabel*>(u"messageLabel"_s)->text(),
                 u"Bitte warten, Verbindung zu Tessarim wird hergestellt ..."_s);
        const auto* const bar = theDialog->findChild<QProgressBar*>();
        QCOMPARE(bar->minimum(), 0);
        QCOMPARE(bar->maximum(), 0);
        dialog.reject();
    });
    clock.start();
    QCOMPARE(dialog.exec(), int{QDialog::Rejected});
    QVERIFY2(shownAfter > 4000, QByteArray::number(shownAfter));
    QVERIFY2(shownAfter < 30000, QByteArray::number(shownAfter)); // not only after the minute
}

void tst_VXOAuth2LoginDialog::timeDecidesWhatIsShown_data()
{
    QTest::addColumn<qint64>("time"); // milliseconds
    QTest::addColumn<bool>("isProgressShown");
    QTest::addColumn<bool>("isMessageShown");

    QTest::newRow("begin") << 0LL << false << false;
    QTest::newRow("4 s") << 4000LL << false << false;
    QTest::newRow("just over 4 s") << 4001LL << true << false;
    QTest::newRow("just under 60 s") << 59999LL << true << false;
    QTest::newRow("60 s") << 60000LL << false << true;
    QTest::newRow("much later") << 3600000LL << false << true;
}

void tst_VXOAuth2LoginDialog::timeDecidesWhatIsShown()
{
    QFETCH(qint64, time);
    QFETCH(bool, isProgressShown);
    QFETCH(bool, isMessageShown);

    Dialog dialog(myPeer.url(u"/silent"_s));
    bool isMessageSeen = false;
    const VXDialogVisitor user([&](QDialog* theDialog) {
        if (auto* const box = qobject_cast<QMessageBox*>(theDialog)) {
            isMessageSeen = true;
            box->accept();
        }
    });
    dialog.show();
    dialog.time = time;
    dialog.handleTimeout();
    QCOMPARE(!visibleOnes<QProgressDialog>().isEmpty(), isProgressShown);
    QCOMPARE(isMessageSeen, isMessageShown);
}

void tst_VXOAuth2LoginDialog::progressGoesWithThePage()
{
    Dialog dialog(myPeer.url(u"/held"_s));
    dialog.time = 5000;
    int looksAtEnd = 0;
    bool wasShown = false;
    bool isShownAfterwards = true;
    QTimer timer;
    connect(&timer, &QTimer::timeout, &dialog, [&] {
        if (!wasShown && !visibleOnes<QProgressDialog>().isEmpty()) {
            wasShown = true;
            heldPages.release();
        }
        if (dialog.loads.isEmpty())
            return;
        isShownAfterwards = !visibleOnes<QProgressDialog>().isEmpty();
        looksAtEnd = static_cast<int>(dialog.looks.size());
        dialog.reject();
    });
    timer.start(20);
    dialog.exec();
    QVERIFY(wasShown);
    QVERIFY(!isShownAfterwards);
    QVERIFY(looksAtEnd > 0);
}

void tst_VXOAuth2LoginDialog::cancelledProgressRejects()
{
    Dialog dialog(myPeer.url(u"/silent"_s));
    dialog.time = 5000;
    const VXDialogVisitor user([](QDialog* theDialog) {
        if (qobject_cast<QProgressDialog*>(theDialog) != nullptr)
            QTest::mouseClick(theDialog->findChild<QPushButton*>(), Qt::LeftButton);
    });
    QCOMPARE(dialog.exec(), int{QDialog::Rejected});
    QCOMPARE(user.count(), 2);
}

void tst_VXOAuth2LoginDialog::messageComesOnceAndTheDialogGoes()
{
    Dialog dialog(myPeer.url(u"/silent"_s));
    dialog.time = 5000;
    int boxes = 0;
    QElapsedTimer sinceBox;
    const VXDialogVisitor user([&](QDialog* theDialog) {
        if (qobject_cast<QProgressDialog*>(theDialog) != nullptr)
            dialog.time = 60000;
        auto* const box = qobject_cast<QMessageBox*>(theDialog);
        if (box == nullptr)
            return;
        ++boxes;
        QCOMPARE(visibleOnes<QProgressDialog>().size(), 0);
        QCOMPARE(box->icon(), QMessageBox::Information);
        QCOMPARE(box->windowTitle(), u"Tessarim nicht erreichbar"_s);
        QCOMPARE(box->text(), u"Leider konnte keine Verbindung zu Tessarim hergestellt werden.\n"
                              "Bitte überprüfen Sie Ihre Netzwerkverbindung."_s);
        QCOMPARE(box->standardButtons(), QMessageBox::Ok);
        // Open for longer than the watch's interval.
        QTimer::singleShot(1400, Qt::PreciseTimer, box, [&sinceBox, box] {
            sinceBox.start();
            box->button(QMessageBox::Ok)->click();
        });
    });
    QCOMPARE(dialog.exec(), int{QDialog::Rejected});
    QCOMPARE(boxes, 1);
    QVERIFY2(sinceBox.elapsed() >= 235, QByteArray::number(sinceBox.elapsed()));
}

/// The time is up at a look that is not the timer's own: Qt fires no timer within itself, so only
/// then the watch could open a second message.
void tst_VXOAuth2LoginDialog::watchRestsWhileTheMessageIsOpen()
{
    Dialog dialog(myPeer.url(u"/silent"_s));
    dialog.time = 0;
    int boxes = 0;
    qsizetype looksMeanwhile = -1;
    const VXDialogVisitor user([&](QDialog* theDialog) {
        if (theDialog == &dialog) {
            dialog.time = 60000;
            dialog.handleTimeout();
            return;
        }
        ++boxes;
        dialog.looks.clear();
        QTimer::singleShot(1400, theDialog, [&, theDialog] { // more than two intervals
            looksMeanwhile = dialog.looks.size();
            theDialog->accept();
        });
    });
    QCOMPARE(dialog.exec(), int{QDialog::Rejected});
    QCOMPARE(boxes, 1);
    QCOMPARE(looksMeanwhile, 0);
}

void tst_VXOAuth2LoginDialog::failedPageEndsTheWatch()
{
    QUrl closed;
    {
        const VXRawPeer peer;
        closed = peer.url();
    }
    Dialog dialog(closed);
    dialog.time = 60000; // any look would end in a message
    QTRY_COMPARE(dialog.loads, QList<bool>{false});
    const VXDialogVisitor user(endMessage);
    QTimer::singleShot(1200, &dialog, &QDialog::reject);
    dialog.exec();
    QCOMPARE(dialog.looks.size(), 0);
    QCOMPARE(user.count(), 1);
}

void tst_VXOAuth2LoginDialog::laterPagesAreNotWatched()
{
    Dialog dialog(myPeer.url(u"/page"_s));
    dialog.time = 0;
    const VXDialogVisitor user(endMessage);
    const qsizetype before = myPeer.requests().size();
    QTimer::singleShot(0, &dialog, [&dialog, this] {
        QTRY_COMPARE(dialog.loads.size(), 1);
        dialog.time = 60000;
        dialog.looks.clear();
        dialog.findChild<QWebEngineView*>()->setUrl(myPeer.url(u"/silent"_s));
        QTimer::singleShot(1200, &dialog, &QDialog::reject);
    });
    dialog.exec();
    QVERIFY(myPeer.requests().size() > before);
    QCOMPARE(dialog.looks.size(), 0);
    QCOMPARE(user.count(), 1);
}

void tst_VXOAuth2LoginDialog::loadedPageIsNotWatched()
{
    Dialog dialog(myPeer.url(u"/page"_s));
    QTRY_COMPARE(dialog.loads, QList<bool>{true}); // before exec()
    dialog.time = 60000;
    const VXDialogVisitor user(endMessage);
    QTimer::singleShot(1200, &dialog, &QDialog::reject);
    dialog.exec();
    QCOMPARE(dialog.looks.size(), 0);
    QCOMPARE(user.count(), 1);
}

void tst_VXOAuth2LoginDialog::closedDialogWatchesNoMore()
{
    Dialog dialog(myPeer.url(u"/silent"_s));
    dialog.time = 0;
    QTimer::singleShot(100, &dialog, &QDialog::reject);
    QCOMPARE(dialog.exec(), int{QDialog::Rejected});

    dialog.time = 60000;
    const VXDialogVisitor user(endMessage);
    int ticks = 0;
    QTimer timer; // as often as the watch: had it gone on, it would have looked
    connect(&timer, &QTimer::timeout, &timer, [&ticks] { ++ticks; });
    timer.start(500);
    QTRY_VERIFY(ticks >= 3);
    QCOMPARE(dialog.looks.size(), 0);
    QCOMPARE(user.count(), 0);
}

void tst_VXOAuth2LoginDialog::timeoutWithoutExecDoesNothing()
{
    Dialog dialog(myPeer.url(u"/silent"_s));
    const VXDialogVisitor user(endMessage);
    dialog.handleTimeout(); // the stopwatch does not run
    QCOMPARE(user.count(), 0);
}

void tst_VXOAuth2LoginDialog::ownerMayDeleteItInTheMiddle()
{
    auto dialog = std::make_unique<Dialog>(myPeer.url(u"/silent"_s));
    dialog->time = 60000;
    const VXDialogVisitor user([&](QDialog* theDialog) {
        if (qobject_cast<QMessageBox*>(theDialog) != nullptr)
            dialog.reset(); // takes its box along
    });
    QCOMPARE(dialog->exec(), int{QDialog::Rejected});
    QCOMPARE(user.count(), 2);
    QVERIFY(!dialog);
}

VX_TEST_MAIN(QApplication, tst_VXOAuth2LoginDialog)

#include "tst_VXOAuth2LoginDialog.moc"
