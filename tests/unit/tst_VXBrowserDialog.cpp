#include <VXNetworking/VXBrowserDialog.h>

#include "VXProbe.h"
#include "VXRawPeer.h"
#include "VXWebTest.h"

#include <VXCore/VXBasisSettings.h>
#include <VXCore/VXDirectoryConfig.h>
#include <VXCore/VXRequestDiskAccess.h>
#include <VXNetworking/VXWebView.h>

#include <QtCore/QFile>
#include <QtCore/QPointer>
#include <QtCore/QRegularExpression>
#include <QtCore/QTemporaryDir>
#include <QtGui/QScreen>
#include <QtWebEngineWidgets/QWebEngineView>
#include <QtWidgets/QApplication>
#include <QtWidgets/QDialogButtonBox>
#include <QtWidgets/QLabel>
#include <QtWidgets/QLayout>
#include <QtWidgets/QLineEdit>
#include <QtWidgets/QProgressBar>
#include <QtWidgets/QPushButton>
#include <QtWidgets/QToolButton>

#include <functional>

using namespace Qt::StringLiterals;

namespace {

const QString shortPage = u"<html><head><title>Rechnung</title></head><body style='margin:0'>"
                          "<div style='width:300px;height:200px'>Text</div></body></html>"_s;

/// Stands for the user in front of the file dialog.
class RecordingDiskAccess : public VXRequestDiskAccess
{
public:
    QString getSaveFileName(int theMode, QWidget* theParent, const QString& theCaption,
                            const QString& theFilter, const QString& theDefaultName) override
    {
        asked = {QString::number(theMode), theCaption, theFilter, theDefaultName};
        parent = theParent;
        if (whileOpen)
            whileOpen();
        return answer;
    }

    QStringList asked;
    QWidget* parent = nullptr;
    QString answer;
    std::function<void()> whileOpen;
};

RecordingDiskAccess* user = nullptr;

QToolButton* toolButton(const VXBrowserDialog& theDialog, const QString& theText)
{
    const auto buttons = theDialog.findChildren<QToolButton*>();
    for (auto* const button : buttons) {
        if (button->text() == theText)
            return button;
    }
    return nullptr;
}

QLineEdit* urlEdit(const VXBrowserDialog& theDialog)
{
    return theDialog.mainArea()->findChild<QLineEdit*>();
}

QPushButton* loadButton(const VXBrowserDialog& theDialog)
{
    return theDialog.mainArea()->findChild<QPushButton*>();
}

QWebEngineView* page(const VXBrowserDialog& theDialog)
{
    return qobject_cast<QWebEngineView*>(theDialog.webView()->nativeWidget());
}

bool waitForLoad(const VXBrowserDialog& theDialog, const std::function<void()>& theStart)
{
    QSignalSpy finished(theDialog.webView(), &VXWebView::loadFinished);
    theStart();
    return finished.wait(30000) && finished.constFirst().constFirst().toBool();
}

bool load(VXBrowserDialog& theDialog, const QString& theHtml)
{
    return waitForLoad(theDialog, [&] { theDialog.setHtml(theHtml); });
}

QString pageOfSize(int theWidth, int theHeight)
{
    return u"<html><body style='margin:0;overflow:hidden'>"
           "<div style='width:%1px;height:%2px'></div></body></html>"_s.arg(theWidth)
               .arg(theHeight);
}

/// Shows the page and waits until the engine knows its size.
bool show(VXBrowserDialog& theDialog, int theWidth, int theHeight)
{
    theDialog.show();
    // The engine counts the pixels of the screen.
    const QSizeF size = QSizeF(theWidth, theHeight) * theDialog.devicePixelRatio();
    return load(theDialog, pageOfSize(theWidth, theHeight)) &&
           QTest::qWaitFor([&] { return theDialog.webView()->contentsSize() == size; }, 20000);
}

QString text(const QRect& theRect)
{
    return u"%1,%2 %3x%4"_s.arg(theRect.x())
        .arg(theRect.y())
        .arg(theRect.width())
        .arg(theRect.height());
}

QList<int> numbers(const QString& theText)
{
    QList<int> numbers;
    const auto words = theText.split(QRegularExpression(u"[, x]"_s));
    for (const QString& word : words)
        numbers.append(word.toInt());
    return numbers;
}

/// Fits a shown page and prints the frame, the room on the screen, the page's widget and the
/// screen.
int fit(int theWidth, int theHeight, const QPoint& thePosition)
{
    VXBrowserDialog dialog(nullptr, false, false);
    dialog.setGeometry(QRect(thePosition, QSize(400, 300)));
    if (!show(dialog, theWidth, theHeight))
        return 1;
    dialog.setAdjustSizeEnabled(true);
    dialog.adjustSize();
    dialog.layout()->activate(); // else when the event loop runs
    VXProbe::print(text(dialog.frameGeometry()));
    VXProbe::print(text(dialog.screen()->availableGeometry()));
    VXProbe::print(u"%1x%2"_s.arg(page(dialog)->width()).arg(page(dialog)->height()));
    VXProbe::print(u"%1 %2"_s.arg(dialog.screen()->name()).arg(dialog.devicePixelRatio()));
    return 0;
}

int fitSmallPage()
{
    return fit(700, 350, QPoint(50, 50));
}

int fitTallPage()
{
    return fit(900, 5000, QPoint(50, 50));
}

int fitWidePage()
{
    return fit(5000, 600, QPoint(50, 50));
}

int fitOnSecondScreen()
{
    return fit(700, 350, QPoint(2300, 500));
}

int fitPageOfUnknownSize()
{
    VXBrowserDialog dialog(nullptr, false, false); // never shown, so no page has a size
    dialog.resize(400, 300);
    dialog.setAdjustSizeEnabled(true);
    const QSize rest = dialog.size() - page(dialog)->size();
    if (dialog.webView()->contentsSize() != QSizeF(0, 0))
        return 1;
    dialog.adjustSize();
    VXProbe::print(
        u"%1x%2"_s.arg(dialog.width() - rest.width()).arg(dialog.height() - rest.height()));
    return 0;
}

int fitAfterTheFirstLoad()
{
    VXBrowserDialog dialog(nullptr, false, false);
    dialog.setAdjustSizeEnabled(true);
    dialog.resize(600, 480);
    dialog.show();
    if (!load(dialog, pageOfSize(100, 100)))
        return 1;
    VXProbe::print(text(dialog.geometry()));
    return 0;
}

/// The probe's lines on screens that the JSON text describes.
QStringList onScreens(const QString& theProbe, const QByteArray& theScreens)
{
    const QTemporaryDir folder;
    QFile file(folder.filePath(u"screens.json"_s));
    if (!file.open(QFile::WriteOnly) || file.write(theScreens) < 0)
        qFatal("cannot write the screens");
    file.close();
    const QByteArray before = qgetenv("QT_QPA_PLATFORM");
    qputenv("QT_QPA_PLATFORM", "offscreen:configfile=" + file.fileName().toUtf8());
    const QStringList lines = VXProbe::run(theProbe, std::chrono::seconds(90));
    qputenv("QT_QPA_PLATFORM", before);
    return lines;
}

QByteArray screen(const QByteArray& theName, int theX, int theY, int theWidth, int theHeight,
                  int theRatio = 1)
{
    return QByteArray("{\"name\":\"") + theName + "\",\"x\":" + QByteArray::number(theX) +
           ",\"y\":" + QByteArray::number(theY) + ",\"width\":" + QByteArray::number(theWidth) +
           ",\"height\":" + QByteArray::number(theHeight) +
           ",\"logicalDpi\":96,\"logicalBaseDpi\":96,\"dpr\":" + QByteArray::number(theRatio) + "}";
}

QByteArray screens(const QByteArrayList& theScreens)
{
    return "{\"windowFrameMargins\":true,\"screens\":[" + theScreens.join(',') + "]}";
}

const QByteArray smallScreen = screens({screen("small", 0, 0, 800, 800)});
const QByteArray wideScreen = screens({screen("wide", 0, 0, 1920, 1080)});
const QByteArray hugeScreen = screens({screen("huge", 0, 0, 3840, 2160)});
const QByteArray twoScreens =
    screens({screen("wide", 0, 0, 1920, 1080), screen("second", 1920, 200, 1280, 1024)});
const QByteArray denseScreen = screens({screen("dense", 0, 0, 1920, 1080, 2)});

} // namespace

class tst_VXBrowserDialog : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void init();

    void theDialogHasOneDefaultButtonAndNoHeadline();
    void theWidgetsAreThoseOfABrowser();
    void buttonsAreShownAsAskedFor_data();
    void buttonsAreShownAsAskedFor();
    void thePrintButtonAsksForPrinting();
    void theTitleIsTheProposedFileName_data();
    void theTitleIsTheProposedFileName();
    void theChosenFileIsAnnounced();
    void aCancelledFileDialogIsAnnouncedToo();
    void theSaveButtonSaves();
    void aDialogThatClosedWhileAskingSavesNothing();
    void theTitleFollowsThePage();
    void aPageThatClosesItselfAcceptsTheDialog();
    void theCursorTellsOfTheLoad();
    void theProgressBarTellsOfTheLoad();
    void theAddressIsHiddenFromUsers();
    void theAddressIsShownInDeveloperMode();
    void theAddressOmitsUserAndPassword();
    void anAddressWithoutSchemeIsLoadedByHttp();
    void anAddressWithSchemeIsLoadedAsItIs();
    void thePageIsInjected();
    void keysPrintAndSave();
    void keysOfHiddenButtonsDoNothing();
    void keysZoom();
    void escapeCloses();
    void escapeClosesFromWithinThePage();
    void theDialogDeletesItsView();
    void aDeadPageIsHarmless();

    void aPageIsFitted_data();
    void aPageIsFitted();
    void aPageWithoutSizeGetsTheUsualOne();
    void theFirstLoadFits_data();
    void theFirstLoadFits();
    void fittingIsDoneOnce();
    void fittingCanBeTakenBack();
    void aFailedLoadKeepsTheSize();
    void aFittingPageStaysWhereItIs();
    void aDialogTooLargeForTheScreenIsFitted_data();
    void aDialogTooLargeForTheScreenIsFitted();
};

void tst_VXBrowserDialog::initTestCase()
{
    VXDirectoryConfig::instance()->setRoot(VXDirectoryConfig::Root::Icons,
                                           QStringLiteral(VX_SOURCE_DIR "/assets/icons"));
}

void tst_VXBrowserDialog::init()
{
    VXBasisSettings::instance()->setMasterMode(false);
    auto access = std::make_unique<RecordingDiskAccess>();
    user = access.get();
    std::ignore = VXRequestDiskAccess::setInstance(std::move(access));
}

void tst_VXBrowserDialog::theDialogHasOneDefaultButtonAndNoHeadline()
{
    const VXBrowserDialog dialog(nullptr, true, true);
    QCOMPARE(dialog.property("dialogKind").toInt(), 8);
    QCOMPARE(dialog.findChild<QDialogButtonBox*>()->standardButtons(), QDialogButtonBox::Ok);
    QVERIFY(dialog.standardButton(QDialogButtonBox::Ok)->isDefault());
    QVERIFY(dialog.findChild<QLabel*>(u"headlineLabel"_s)->isHidden());
    QCOMPARE(dialog.windowTitle(), u"VXBrowserDialog"_s);
}

void tst_VXBrowserDialog::theWidgetsAreThoseOfABrowser()
{
    const VXBrowserDialog dialog(nullptr, true, true);
    QCOMPARE(dialog.webView()->objectName(), u"BrowserDialogWebView"_s);
    QCOMPARE(loadButton(dialog)->text(), u"URL laden"_s);
    for (const QString& text : {u"Drucken"_s, u"Speichern"_s}) {
        QVERIFY(toolButton(dialog, text) != nullptr);
        QCOMPARE(toolButton(dialog, text)->toolTip(), text);
        QVERIFY(!toolButton(dialog, text)->icon().isNull());
    }
    QVERIFY(urlEdit(dialog)->isReadOnly());

    const auto* const bar = dialog.findChild<QProgressBar*>();
    QVERIFY(!bar->isTextVisible());
    QCOMPARE(bar->maximumHeight(), 7);
    QVERIFY(bar->isHidden());

    QCOMPARE(page(dialog)->sizePolicy().horizontalPolicy(), QSizePolicy::Expanding);
    QCOMPARE(page(dialog)->sizePolicy().verticalPolicy(), QSizePolicy::Expanding);
    QCOMPARE(dialog.webView()->url(), QUrl(u"about:blank"_s));
}

void tst_VXBrowserDialog::buttonsAreShownAsAskedFor_data()
{
    QTest::addColumn<bool>("print");
    QTest::addColumn<bool>("save");

    QTest::newRow("none") << false << false;
    QTest::newRow("print") << true << false;
    QTest::newRow("save") << false << true;
    QTest::newRow("both") << true << true;
}

void tst_VXBrowserDialog::buttonsAreShownAsAskedFor()
{
    QFETCH(bool, print);
    QFETCH(bool, save);

    VXBrowserDialog dialog(nullptr, print, save);
    dialog.show();
    QCOMPARE(toolButton(dialog, u"Drucken"_s)->isVisible(), print);
    QCOMPARE(toolButton(dialog, u"Speichern"_s)->isVisible(), save);
}

void tst_VXBrowserDialog::thePrintButtonAsksForPrinting()
{
    VXBrowserDialog dialog(nullptr, true, false);
    // Without the view: it would show the print dialog.
    QVERIFY(disconnect(&dialog, &VXBrowserDialog::printContent, dialog.webView(), nullptr));
    const QSignalSpy printed(&dialog, &VXBrowserDialog::printContent);
    toolButton(dialog, u"Drucken"_s)->click();
    QCOMPARE(printed.count(), 1);
}

void tst_VXBrowserDialog::theTitleIsTheProposedFileName_data()
{
    QTest::addColumn<QString>("title");
    QTest::addColumn<QString>("name");

    QTest::newRow("plain") << u"Rechnung"_s << u"Rechnung.pdf"_s;
    QTest::newRow("has the ending") << u"Rechnung.pdf"_s << u"Rechnung.pdf"_s;
    QTest::newRow("in capitals") << u"Rechnung.PDF"_s << u"Rechnung.PDF.pdf"_s;
    QTest::newRow("with a slash") << u"a/b"_s << u"a/b.pdf"_s;
    QTest::newRow("none") << QString() << u".pdf"_s;
}

void tst_VXBrowserDialog::theTitleIsTheProposedFileName()
{
    QFETCH(QString, title);
    QFETCH(QString, name);

    VXBrowserDialog dialog(nullptr, false, true);
    dialog.setWindowTitle(title);
    dialog.save();
    QCOMPARE(user->asked, (QStringList{u"3"_s, u"Sichern als..."_s, u"PDF-Files (*.pdf)"_s, name}));
    QCOMPARE(user->parent, &dialog);
}

void tst_VXBrowserDialog::theChosenFileIsAnnounced()
{
    const QTemporaryDir folder;
    VXBrowserDialog dialog(nullptr, false, true);
    QVERIFY(load(dialog, shortPage));
    const QSignalSpy saved(&dialog, &VXBrowserDialog::saveContent);
    user->answer = folder.filePath(u"a.pdf"_s);
    dialog.save();
    QCOMPARE(saved.count(), 1);
    QCOMPARE(saved.constFirst().constFirst().toString(), user->answer);
    QTRY_VERIFY(QFile::exists(user->answer)); // the view has heard it
}

void tst_VXBrowserDialog::aCancelledFileDialogIsAnnouncedToo()
{
    VXBrowserDialog dialog(nullptr, false, true);
    const QSignalSpy saved(&dialog, &VXBrowserDialog::saveContent);
    dialog.save();
    QCOMPARE(saved.count(), 1);
    QVERIFY(saved.constFirst().constFirst().toString().isEmpty());
}

void tst_VXBrowserDialog::theSaveButtonSaves()
{
    const VXBrowserDialog dialog(nullptr, false, true);
    toolButton(dialog, u"Speichern"_s)->click();
    QCOMPARE(user->asked.value(3), u"VXBrowserDialog.pdf"_s);
}

void tst_VXBrowserDialog::aDialogThatClosedWhileAskingSavesNothing()
{
    auto* const dialog = new VXBrowserDialog(nullptr, false, true);
    const QSignalSpy saved(dialog, &VXBrowserDialog::saveContent);
    user->whileOpen = [dialog] { delete dialog; };
    dialog->save();
    QCOMPARE(saved.count(), 0);
}

void tst_VXBrowserDialog::theTitleFollowsThePage()
{
    VXBrowserDialog dialog(nullptr, false, false);
    QVERIFY(load(dialog, shortPage));
    QCOMPARE(dialog.windowTitle(), u"Rechnung"_s);
    std::ignore = dialog.webView()->runJavascriptSync(u"document.title = 'Neu'"_s);
    QTRY_COMPARE(dialog.windowTitle(), u"Neu"_s);
}

void tst_VXBrowserDialog::aPageThatClosesItselfAcceptsTheDialog()
{
    VXBrowserDialog dialog(nullptr, false, false);
    const QSignalSpy accepted(&dialog, &QDialog::accepted);
    dialog.show();
    dialog.setHtml(u"<script>window.close()</script>"_s);
    QTRY_COMPARE_WITH_TIMEOUT(accepted.count(), 1, 20000);
    QVERIFY(dialog.isHidden());
}

void tst_VXBrowserDialog::theCursorTellsOfTheLoad()
{
    VXBrowserDialog dialog(nullptr, false, false);
    QSignalSpy started(dialog.webView(), &VXWebView::loadStarted);
    Qt::CursorShape during = Qt::ArrowCursor;
    connect(dialog.webView(), &VXWebView::loadStarted, &dialog,
            [&] { during = page(dialog)->cursor().shape(); });
    QVERIFY(load(dialog, shortPage));
    QCOMPARE(during, Qt::WaitCursor);
    QVERIFY(!page(dialog)->testAttribute(Qt::WA_SetCursor));
    QVERIFY(!started.isEmpty());
}

void tst_VXBrowserDialog::theProgressBarTellsOfTheLoad()
{
    VXBrowserDialog dialog(nullptr, false, false);
    dialog.show();
    auto* const bar = dialog.findChild<QProgressBar*>();
    Q_EMIT dialog.webView()->loadStarted();
    QVERIFY(bar->isVisible());
    QCOMPARE(bar->value(), -1);
    Q_EMIT dialog.webView()->loadProgress(40);
    QCOMPARE(bar->value(), 40);
    Q_EMIT dialog.webView()->loadFinished(false);
    QVERIFY(bar->isHidden());
    Q_EMIT dialog.webView()->loadStarted();
    QCOMPARE(bar->value(), -1);
}

void tst_VXBrowserDialog::theAddressIsHiddenFromUsers()
{
    VXBrowserDialog dialog(nullptr, false, false);
    dialog.show();
    QVERIFY(urlEdit(dialog)->isHidden());
    QVERIFY(loadButton(dialog)->isHidden());
}

void tst_VXBrowserDialog::theAddressIsShownInDeveloperMode()
{
    VXBasisSettings::instance()->setMasterMode(true);
    VXBrowserDialog dialog(nullptr, false, false);
    dialog.show();
    QVERIFY(urlEdit(dialog)->isVisible());
    QVERIFY(!urlEdit(dialog)->isReadOnly());
    QVERIFY(loadButton(dialog)->isVisible());
}

void tst_VXBrowserDialog::theAddressOmitsUserAndPassword()
{
    VXRawPeer peer;
    VXBrowserDialog dialog(nullptr, false, false);
    QUrl url = peer.url(u"/a?b=c"_s);
    url.setUserInfo(u"anna:geheim"_s);
    QVERIFY(waitForLoad(dialog, [&] { dialog.setUrl(url); }));
    QCOMPARE(urlEdit(dialog)->text(), peer.url(u"/a?b=c"_s).toString());
}

void tst_VXBrowserDialog::anAddressWithoutSchemeIsLoadedByHttp()
{
    VXRawPeer peer;
    VXBasisSettings::instance()->setMasterMode(true);
    VXBrowserDialog dialog(nullptr, false, false);
    urlEdit(dialog)->setText(u"127.0.0.1:%1/x"_s.arg(peer.port()));
    QVERIFY(waitForLoad(dialog, [&] { loadButton(dialog)->click(); }));
    QCOMPARE(peer.requests().constFirst().target(), "/x");
    QCOMPARE(dialog.webView()->url(), peer.url(u"/x"_s));
}

void tst_VXBrowserDialog::anAddressWithSchemeIsLoadedAsItIs()
{
    VXBasisSettings::instance()->setMasterMode(true);
    VXBrowserDialog dialog(nullptr, false, false);
    urlEdit(dialog)->setText(u"data:text/html,<title>typed</title>"_s);
    QVERIFY(waitForLoad(dialog, [&] { loadButton(dialog)->click(); }));
    QTRY_COMPARE(dialog.windowTitle(), u"typed"_s);
}

void tst_VXBrowserDialog::thePageIsInjected()
{
    VXBrowserDialog dialog(nullptr, false, false);
    QVERIFY(load(dialog, shortPage));
    QTRY_COMPARE(dialog.webView()->runJavascriptSync(u"typeof anchors"_s).toString(), u"object"_s);
}

void tst_VXBrowserDialog::keysPrintAndSave()
{
    VXBrowserDialog dialog(nullptr, true, true);
    QVERIFY(disconnect(&dialog, &VXBrowserDialog::printContent, dialog.webView(), nullptr));
    const QSignalSpy printed(&dialog, &VXBrowserDialog::printContent);
    const QSignalSpy saved(&dialog, &VXBrowserDialog::saveContent);
    dialog.show();
    QVERIFY(QTest::qWaitForWindowActive(&dialog));
    QTest::keyClick(&dialog, Qt::Key_P, Qt::ControlModifier);
    QTRY_COMPARE(printed.count(), 1);
    QTest::keyClick(&dialog, Qt::Key_S, Qt::ControlModifier);
    QTRY_COMPARE(saved.count(), 1);
}

void tst_VXBrowserDialog::keysOfHiddenButtonsDoNothing()
{
    VXBrowserDialog dialog(nullptr, false, false);
    const QSignalSpy printed(&dialog, &VXBrowserDialog::printContent);
    const QSignalSpy saved(&dialog, &VXBrowserDialog::saveContent);
    dialog.show();
    QVERIFY(QTest::qWaitForWindowActive(&dialog));
    QTest::keyClick(&dialog, Qt::Key_P, Qt::ControlModifier);
    QTest::keyClick(&dialog, Qt::Key_S, Qt::ControlModifier);
    QTest::keyClick(&dialog, Qt::Key_Escape); // later than both
    QTRY_VERIFY(dialog.isHidden());
    QCOMPARE(printed.count(), 0);
    QCOMPARE(saved.count(), 0);
}

void tst_VXBrowserDialog::keysZoom()
{
    VXBrowserDialog dialog(nullptr, false, false);
    dialog.show();
    QVERIFY(load(dialog, shortPage));
    QVERIFY(QTest::qWaitForWindowActive(&dialog));
    QTest::keyClick(&dialog, Qt::Key_Plus, Qt::ControlModifier);
    QTest::keyClick(&dialog, Qt::Key_Plus, Qt::ControlModifier);
    QTRY_COMPARE(page(dialog)->zoomFactor(), 1.2);
    QTest::keyClick(&dialog, Qt::Key_Minus, Qt::ControlModifier);
    QTRY_COMPARE(page(dialog)->zoomFactor(), 1.1);
    QTest::keyClick(&dialog, Qt::Key_0, Qt::ControlModifier);
    QTRY_COMPARE(page(dialog)->zoomFactor(), 1.0);
    for (int i = 0; i < 20; ++i)
        QTest::keyClick(&dialog, Qt::Key_Minus, Qt::ControlModifier);
    QCOMPARE(page(dialog)->zoomFactor(), 0.25);
    page(dialog)->setZoomFactor(1);
}

void tst_VXBrowserDialog::escapeCloses()
{
    VXBrowserDialog dialog(nullptr, false, false);
    dialog.show();
    QTest::keyClick(&dialog, Qt::Key_Escape);
    QVERIFY(dialog.isHidden());
    QCOMPARE(dialog.result(), int(QDialog::Rejected));
}

void tst_VXBrowserDialog::escapeClosesFromWithinThePage()
{
    VXBrowserDialog dialog(nullptr, false, false);
    dialog.show();
    QVERIFY(QTest::qWaitForWindowActive(&dialog));
    QVERIFY(load(dialog, u"<input id='a' autofocus>"_s));
    page(dialog)->setFocus();
    QVERIFY(page(dialog)->focusProxy() != nullptr);
    QTest::keyClick(page(dialog)->focusProxy(), Qt::Key_Escape);
    QTRY_VERIFY(dialog.isHidden());
}

void tst_VXBrowserDialog::theDialogDeletesItsView()
{
    auto dialog = std::make_unique<VXBrowserDialog>(nullptr, false, false);
    const QPointer<VXWebView> view = dialog->webView();
    dialog.reset();
    QVERIFY(view.isNull());
}

void tst_VXBrowserDialog::aDeadPageIsHarmless()
{
    VXBrowserDialog dialog(nullptr, false, false);
    dialog.setAdjustSizeEnabled(true);
    delete page(dialog);
    dialog.adjustSize();
    Q_EMIT dialog.webView()->loadStarted();
    Q_EMIT dialog.webView()->loadFinished(true);
    dialog.setUrl(QUrl(u"about:blank"_s));
    dialog.setHtml(shortPage);
    dialog.show();
    QVERIFY(QTest::qWaitForWindowActive(&dialog));
    QTest::keyClick(&dialog, Qt::Key_Plus, Qt::ControlModifier);
    QCOMPARE(dialog.webView()->nativeWidget(), nullptr);
}

/// The size of the frame where the screen limits it; where it does not, the page gets its own size
/// and 20 pixels more. 0 = see the other.
void tst_VXBrowserDialog::aPageIsFitted_data()
{
    QTest::addColumn<QString>("probe");
    QTest::addColumn<QByteArray>("screens");
    QTest::addColumn<QString>("screen");
    QTest::addColumn<QRect>("available");
    QTest::addColumn<QSize>("frame");
    QTest::addColumn<QSize>("widget");

    QTest::newRow("small page") << u"fitSmallPage"_s << wideScreen << u"wide 1"_s
                                << QRect(0, 0, 1920, 1080) << QSize(0, 0) << QSize(720, 370);
    QTest::newRow("second screen at an offset")
        << u"fitOnSecondScreen"_s << twoScreens << u"second 1"_s << QRect(1920, 200, 1280, 1024)
        << QSize(0, 0) << QSize(720, 370);
    QTest::newRow("dense screen") << u"fitSmallPage"_s << denseScreen << u"dense 2"_s
                                  << QRect(0, 0, 1920, 1080) << QSize(0, 0) << QSize(1420, 720);
    QTest::newRow("tall page") << u"fitTallPage"_s << wideScreen << u"wide 1"_s
                               << QRect(0, 0, 1920, 1080) << QSize(0, 1000) << QSize(920, 0);
    QTest::newRow("wide page") << u"fitWidePage"_s << wideScreen << u"wide 1"_s
                               << QRect(0, 0, 1920, 1080) << QSize(1920, 0) << QSize(0, 620);
    QTest::newRow("small screen") << u"fitTallPage"_s << smallScreen << u"small 1"_s
                                  << QRect(0, 0, 800, 800) << QSize(800, 720) << QSize(0, 0);
}

void tst_VXBrowserDialog::aPageIsFitted()
{
    QFETCH(QString, probe);
    QFETCH(QByteArray, screens);
    QFETCH(QString, screen);
    QFETCH(QRect, available);
    QFETCH(QSize, frame);
    QFETCH(QSize, widget);

    const QStringList lines = onScreens(probe, screens);
    QCOMPARE(lines.size(), 4);
    QCOMPARE(lines.at(3), screen);
    QCOMPARE(lines.at(1), text(available));

    const QList<int> got = numbers(lines.at(0)); // left, top, width, height
    QCOMPARE(got.at(0), available.x() + (available.width() - got.at(2)) / 2);
    QCOMPARE(got.at(1), available.y() + (available.height() - got.at(3)) / 2);
    const QList<int> page = numbers(lines.at(2));
    QCOMPARE(frame.width() > 0 ? got.at(2) : page.at(0),
             frame.width() > 0 ? frame.width() : widget.width());
    QCOMPARE(frame.height() > 0 ? got.at(3) : page.at(1),
             frame.height() > 0 ? frame.height() : widget.height());
}

void tst_VXBrowserDialog::aPageWithoutSizeGetsTheUsualOne()
{
    QCOMPARE(onScreens(u"fitPageOfUnknownSize"_s, hugeScreen), QStringList(u"1044x788"_s));
}

void tst_VXBrowserDialog::theFirstLoadFits_data()
{
    QTest::addColumn<QByteArray>("screens");
    QTest::addColumn<QString>("geometry");

    QTest::newRow("small screen") << smallScreen << u"2,42 796x716"_s;
}

/// The engine has no size of the page yet.
void tst_VXBrowserDialog::theFirstLoadFits()
{
    QFETCH(QByteArray, screens);
    QFETCH(QString, geometry);
    QCOMPARE(onScreens(u"fitAfterTheFirstLoad"_s, screens), QStringList(geometry));
}

void tst_VXBrowserDialog::fittingIsDoneOnce()
{
    VXBrowserDialog dialog(nullptr, false, false);
    dialog.resize(400, 300);
    dialog.setAdjustSizeEnabled(true);
    dialog.adjustSize();
    QVERIFY(dialog.size() != QSize(400, 300));
    dialog.resize(400, 300);
    dialog.adjustSize();
    QCOMPARE(dialog.size(), QSize(400, 300));
}

void tst_VXBrowserDialog::fittingCanBeTakenBack()
{
    VXBrowserDialog dialog(nullptr, false, false);
    dialog.resize(400, 300);
    dialog.setAdjustSizeEnabled(true);
    dialog.setAdjustSizeEnabled(false);
    dialog.adjustSize();
    QCOMPARE(dialog.size(), QSize(400, 300));
}

void tst_VXBrowserDialog::aFailedLoadKeepsTheSize()
{
    VXBrowserDialog dialog(nullptr, false, false);
    dialog.resize(400, 300);
    dialog.setAdjustSizeEnabled(true);
    QVERIFY(!waitForLoad(dialog, [&] { dialog.setUrl(QUrl(u"file:///nowhere/at/all"_s)); }));
    QCOMPARE(dialog.size(), QSize(400, 300));
    QVERIFY(dialog.findChild<QProgressBar*>()->isHidden());
    QVERIFY(!page(dialog)->testAttribute(Qt::WA_SetCursor));
    dialog.adjustSize(); // still armed
    QVERIFY(dialog.size() != QSize(400, 300));
}

void tst_VXBrowserDialog::aFittingPageStaysWhereItIs()
{
    VXBrowserDialog dialog(nullptr, false, false);
    dialog.setGeometry(33, 44, 500, 400);
    dialog.show();
    QVERIFY(load(dialog, u"<body style='margin:0'>"_s));
    QTRY_COMPARE(dialog.webView()->contentsSize().toSize(), page(dialog)->size());
    const QRect before = dialog.geometry();
    dialog.setAdjustSizeEnabled(true);
    dialog.adjustSize();
    QCOMPARE(dialog.geometry(), before);
}

void tst_VXBrowserDialog::aDialogTooLargeForTheScreenIsFitted_data()
{
    QTest::addColumn<QSize>("size");
    QTest::addColumn<bool>("isFitted");

    const QSize screen = QGuiApplication::primaryScreen()->availableGeometry().size();
    QTest::newRow("room for the task bar") << QSize(500, screen.height() - 80) << false;
    QTest::newRow("one pixel less") << QSize(500, screen.height() - 79) << true;
    QTest::newRow("as wide as the screen") << QSize(screen.width(), 400) << false;
    QTest::newRow("one pixel wider") << QSize(screen.width() + 1, 400) << true;
}

/// The page needs no other size, so that only the screen decides.
void tst_VXBrowserDialog::aDialogTooLargeForTheScreenIsFitted()
{
    QFETCH(QSize, size);
    QFETCH(bool, isFitted);

    VXBrowserDialog dialog(nullptr, false, false);
    const QSize screen = dialog.screen()->availableGeometry().size();
    dialog.setGeometry(QRect(QPoint(3, 4), size));
    dialog.show();
    QVERIFY(load(dialog, u"<body style='margin:0'>"_s));
    QTRY_COMPARE(dialog.webView()->contentsSize().toSize(), page(dialog)->size());
    QCOMPARE(dialog.size(), size);
    dialog.setAdjustSizeEnabled(true);
    dialog.adjustSize();
    QCOMPARE(dialog.geometry() != QRect(QPoint(3, 4), size), isFitted);
    QVERIFY(dialog.frameGeometry().width() <= screen.width() || !isFitted);
    QVERIFY(dialog.frameGeometry().height() <= screen.height() - 80 || !isFitted);
}

VX_PROBE_TEST_MAIN(QApplication, tst_VXBrowserDialog, {u"fitSmallPage"_s, fitSmallPage},
                   {u"fitTallPage"_s, fitTallPage}, {u"fitWidePage"_s, fitWidePage},
                   {u"fitOnSecondScreen"_s, fitOnSecondScreen},
                   {u"fitPageOfUnknownSize"_s, fitPageOfUnknownSize},
                   {u"fitAfterTheFirstLoad"_s, fitAfterTheFirstLoad})

#include "tst_VXBrowserDialog.moc"
