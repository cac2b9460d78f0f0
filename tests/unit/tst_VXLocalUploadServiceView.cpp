#include <VXNetworking/VXLocalUploadService.h>
#include <VXNetworking/VXLocalUploadServiceView.h>

#include "VXDialogVisitor.h"
#include "VXLan.h"
#include "VXLogCapture.h"
#include "VXPlainHttpClient.h"
#include "VXTestMain.h"

#include <VXCore/VXDeploymentConfig.h>
#include <VXCore/VXDirectoryConfig.h>
#include <VXCore/VXLogger.h>
#include <VXCore/VXMainWindowHandle.h>
#include <VXGUIWidgets/VXQRCodeWidget.h>

#include <QtCore/QDate>
#include <QtCore/QDir>
#include <QtCore/QLoggingCategory>
#include <QtCore/QMetaMethod>
#include <QtCore/QPointer>
#include <QtCore/QProcess>
#include <QtCore/QStandardPaths>
#include <QtCore/QTemporaryDir>
#include <QtCore/QTemporaryFile>
#include <QtGui/QTextDocument>
#include <QtTest/QSignalSpy>
#include <QtWidgets/QApplication>
#include <QtWidgets/QDialog>
#include <QtWidgets/QFileDialog>
#include <QtWidgets/QGridLayout>
#include <QtWidgets/QLabel>
#include <QtWidgets/QLineEdit>
#include <QtWidgets/QPushButton>
#include <QtWidgets/QTextBrowser>

#include <array>
#include <memory>

#include <sys/inotify.h>
#include <unistd.h>

using namespace Qt::StringLiterals;

namespace {

const QString outputFolder = u"" VX_BINARY_DIR "/tests-output/tst_VXLocalUploadServiceView"_s;

/// A view with its main window, and the widgets in its dialog by their rows.
class Transfer
{
    Q_DISABLE_COPY_MOVE(Transfer)

public:
    Transfer()
    {
        VXMainWindowHandle::setMainWindow(&window);
        VXLogger::instance()->setSink([this](const QString& theChannel, const QString& theLine) {
            if (theChannel == u"qrupload")
                actions.append(theLine);
        });
        view = new VXLocalUploadServiceView(&window); // the window's
    }

    ~Transfer()
    {
        VXLogger::instance()->setSink({});
        VXMainWindowHandle::setMainWindow(nullptr);
    }

    QDialog* dialog() const { return window.findChild<QDialog*>(); }
    QGridLayout* layout() const { return qobject_cast<QGridLayout*>(dialog()->layout()); }

    template <typename Widget>
    Widget* row(int theRow) const
    {
        return qobject_cast<Widget*>(layout()->itemAtPosition(theRow, 0)->widget());
    }

    QPushButton* connectionButton() const { return row<QPushButton>(4); }
    QLabel* networkLabel() const { return row<QLabel>(7); }
    QLineEdit* folderLine() const { return row<QLineEdit>(10); }
    QPushButton* changeButton() const { return row<QPushButton>(11); }
    VXQRCodeWidget* code() const { return row<VXQRCodeWidget>(2); }
    QTextBrowser* logBrowser() const { return dialog()->findChild<QTextBrowser*>(); }
    QTimer* timer() const
    {
        return view->findChild<QTimer*>(QString(), Qt::FindDirectChildrenOnly);
    }
    VXLocalUploadService* service() const { return view->findChild<VXLocalUploadService*>(); }

    QStringList actions;
    QWidget window;
    QPointer<VXLocalUploadServiceView> view;
};

QPalette darkPalette()
{
    QPalette palette;
    const QColor window(0x24, 0x27, 0x2b);
    const QColor text(0xee, 0xee, 0xee);
    palette.setColor(QPalette::Window, window);
    palette.setColor(QPalette::Base, window.darker(130));
    palette.setColor(QPalette::Button, window.lighter(140));
    for (const auto role : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText})
        palette.setColor(role, text);
    for (const auto role : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText})
        palette.setColor(QPalette::Disabled, role, Qt::gray);
    return palette;
}

} // namespace

/// Runs in a network namespace: the service listens on addresses of a LAN.
class tst_VXLocalUploadServiceView : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void init();
    void cleanup();

    void methodsStandInTheirOrder();
    void aNewViewHasNoDialogAndDoesNotListen();
    void theDialogHasItsTwelveRows();
    void theDialogIsNamedSizedAndNotModal();
    void theLinksAreStyledAndNoDefaultButtons();
    void theLogBrowserIsHiddenAndReadOnly();
    void firstShowBuildsAndStartsInOrder();
    void laterShowsDoNotRestartTheService();
    void theDefaultFolderIsFixedBeforeTheServiceStarts();
    void withOneAddressThereIsNoConnectionButton();
    void withThreeAddressesTheButtonCounts();
    void aButtonHiddenAgainKeepsItsText();
    void withWiredConnectionsOnlyTheNetworkLabelIsHidden();
    void theNetworkIsShownAsPlainText();
    void withoutInterfaceTheReasonIsShown();
    void theTimerRunsWhileTheDialogIsVisible();
    void theTimerAsksForNewConnections();
    void theEventFilterConsumesNothing();
    void theDialogAppearsBelowTheAnchor();
    void aChosenFolderIsTaken();
    void aCancelledChooserChangesNothing();
    void theMainWindowMayTakeTheChooserAlong();
    void theViewMayGoWhileTheChooserIsOpen();
    void logLinesAreAppendedAsHtml();
    void theLogOpensNoFile_data();
    void theLogOpensNoFile();
    void aLongLogLosesItsOldestPart();
    void beforeTheDialogALogLineIsOnlyWritten();
    void aReceivedFileIsPassedOn();
    void theDialogIsTheMainWindows();
    void noCodeOutlivesTheView();
    void withoutMainWindowTheDialogStandsAlone();
    void boldifyWrapsTheText();
    void itLooksRight_data();
    void itLooksRight();

private:
    std::unique_ptr<QTemporaryDir> myFolder;
};

void tst_VXLocalUploadServiceView::initTestCase()
{
    QCOMPARE(VXLan::missingRight(), QString());
    QLoggingCategory::setFilterRules(u"default.debug=false"_s);
    QVERIFY(QDir().mkpath(outputFolder));
    QVERIFY(QDir().mkpath(QStandardPaths::writableLocation(QStandardPaths::PicturesLocation)));
}

void tst_VXLocalUploadServiceView::init()
{
    myFolder = std::make_unique<QTemporaryDir>();
    QVERIFY(myFolder->isValid());
    VXDirectoryConfig::instance()->setRoot(VXDirectoryConfig::Root::QrUpload, myFolder->path());
    VXDeploymentConfig::instance()->setList(u"Platform/wifiNames"_s, {});
}

void tst_VXLocalUploadServiceView::cleanup()
{
    for (const QString& name : {u"lan1"_s, u"lan2"_s})
        VXLan::removeInterface(name);
    [[maybe_unused]] const QString mayStandAlready =
        VXLan::ip(u"address add 10.77.0.1/24 dev lan0"_s);
}

void tst_VXLocalUploadServiceView::methodsStandInTheirOrder()
{
    const QMetaObject& meta = VXLocalUploadServiceView::staticMetaObject;
    QByteArrayList methods;
    for (int index = meta.methodOffset(); index < meta.methodCount(); ++index)
        methods.append(meta.method(index).methodSignature());
    QCOMPARE(methods, QByteArrayList({"filesUploaded(QFileInfo)", "chooseTargetFolder()",
                                      "log(QString)", "onUrlChanged(QUrl,QString,int,int)"}));
}

void tst_VXLocalUploadServiceView::aNewViewHasNoDialogAndDoesNotListen()
{
    const Transfer transfer;
    QCOMPARE(transfer.view->parent(), &transfer.window);
    QCOMPARE(transfer.dialog(), nullptr);
    QCOMPARE(transfer.service()->parent(), transfer.view.data());
    QCOMPARE(transfer.service()->nextToken().size(), 5);
    QCOMPARE(transfer.service()->selectedConnection(), -1);
    QCOMPARE(transfer.timer()->interval(), 5000);
    QVERIFY(!transfer.timer()->isSingleShot());
    QVERIFY(!transfer.timer()->isActive());
    QCOMPARE(transfer.actions, QStringList());
}

void tst_VXLocalUploadServiceView::theDialogHasItsTwelveRows()
{
    const Transfer transfer;
    transfer.view->init();
    const QGridLayout* const layout = transfer.layout();

    QCOMPARE(layout->rowCount(), 12);
    QCOMPARE(layout->columnCount(), 1);
    QCOMPARE(layout->contentsMargins(), QMargins(24, 24, 24, 24));
    for (const int row : {1, 3, 5, 8}) {
        QVERIFY(layout->itemAtPosition(row, 0)->spacerItem());
        QCOMPARE(layout->itemAtPosition(row, 0)->sizeHint().height(), 5);
    }
    QCOMPARE(transfer.row<QLabel>(0)->text(),
             u"<b>Scannen Sie den QR-Code, um Fotos von Ihrem Mobiltelefon auf dieses Gerät zu "
             u"übertragen.</b>"_s);
    QVERIFY(transfer.row<QLabel>(0)->wordWrap());
    QVERIFY(transfer.code());
    QCOMPARE(layout->itemAtPosition(2, 0)->alignment(), Qt::AlignCenter);
    QCOMPARE(transfer.connectionButton()->text(), u"Andere Verbindung probieren"_s);
    QCOMPARE(transfer.row<QLabel>(6)->text(), u"<b>Beide Geräte benötigen dasselbe WLAN</b>"_s);
    QVERIFY(!transfer.networkLabel()->isEnabled());
    QCOMPARE(transfer.networkLabel()->alignment() & Qt::AlignVertical_Mask, Qt::AlignTop);
    QCOMPARE(transfer.row<QLabel>(9)->text(), u"<b>Speicherort</b>"_s);
    QVERIFY(transfer.folderLine()->isReadOnly());
    QCOMPARE(transfer.folderLine()->text(), transfer.service()->targetFolder());
    QCOMPARE(transfer.changeButton()->text(), u"Ändern"_s);
}

void tst_VXLocalUploadServiceView::theDialogIsNamedSizedAndNotModal()
{
    const Transfer transfer;
    transfer.view->show();
    QCOMPARE(transfer.dialog()->windowTitle(), u"QR-Code scannen"_s);
    QCOMPARE(transfer.dialog()->parentWidget(), &transfer.window);
    QVERIFY(!transfer.dialog()->isModal());
    // A translation's longer words may need more.
    QCOMPARE(transfer.dialog()->size(),
             QSize(315, 513).expandedTo(transfer.dialog()->minimumSizeHint()));
    QCOMPARE(transfer.dialog()->maximumSize(), QSize(QWIDGETSIZE_MAX, QWIDGETSIZE_MAX));
}

void tst_VXLocalUploadServiceView::theLinksAreStyledAndNoDefaultButtons()
{
    const Transfer transfer;
    transfer.view->init();
    for (const QPushButton* const button : {transfer.connectionButton(), transfer.changeButton()}) {
        QCOMPARE(button->property("cssstyle").toString(), u"hyperlinkStyle"_s);
        QCOMPARE(button->cursor().shape(), Qt::PointingHandCursor);
        QVERIFY(!button->autoDefault());
        QVERIFY(!button->isDefault());
    }
    for (const int row : {4, 11})
        QCOMPARE(transfer.layout()->itemAtPosition(row, 0)->alignment(), Qt::AlignRight);
}

void tst_VXLocalUploadServiceView::theLogBrowserIsHiddenAndReadOnly()
{
    const Transfer transfer;
    transfer.view->show();
    QVERIFY(transfer.logBrowser());
    QVERIFY(transfer.logBrowser()->isHidden());
    QVERIFY(transfer.logBrowser()->isReadOnly());
    QVERIFY(transfer.logBrowser()->openExternalLinks());
    QCOMPARE(transfer.layout()->indexOf(transfer.logBrowser()), -1);
}

void tst_VXLocalUploadServiceView::firstShowBuildsAndStartsInOrder()
{
    const Transfer transfer;
    transfer.view->show();
    QCOMPARE(transfer.actions, QStringList({u"ACTION:startService"_s, u"ACTION:nextConnection"_s,
                                            u"ACTION:createDialog"_s, u"ACTION:showDialog"_s}));
    QVERIFY(transfer.dialog()->isVisible());
    QCOMPARE(transfer.code()->url(), transfer.service()->url());
    QCOMPARE(transfer.service()->url().host(), u"10.77.0.1"_s);
}

void tst_VXLocalUploadServiceView::laterShowsDoNotRestartTheService()
{
    Transfer transfer;
    transfer.view->show();
    const QUrl url = transfer.service()->url();
    const QPointer<QDialog> dialog = transfer.dialog();
    transfer.actions.clear();

    transfer.dialog()->hide();
    transfer.view->show();
    transfer.view->show();
    QCOMPARE(transfer.actions, QStringList({u"ACTION:showDialog"_s, u"ACTION:showDialog"_s}));
    QCOMPARE(transfer.service()->url(), url);
    QCOMPARE(transfer.dialog(), dialog.data());
    QVERIFY(transfer.dialog()->isVisible());
}

void tst_VXLocalUploadServiceView::theDefaultFolderIsFixedBeforeTheServiceStarts()
{
    const Transfer transfer;
    QStringList events;
    connect(transfer.service(), &VXLocalUploadService::targetFolderChanged, transfer.view,
            [&events](const QString& theFolder) { events.append(theFolder); });
    connect(transfer.service(), &VXLocalUploadService::urlChanged, transfer.view,
            [&events] { events.append(u"url"_s); });
    transfer.view->init();

    const QString folder =
        QDir(QStandardPaths::writableLocation(QStandardPaths::PicturesLocation)).canonicalPath() +
        u"/Kopierte Fotos "_s + QDate::currentDate().toString(Qt::ISODate);
    QCOMPARE(events, QStringList({folder, u"url"_s, u"url"_s}));
    QCOMPARE(transfer.folderLine()->text(), folder);
}

void tst_VXLocalUploadServiceView::withOneAddressThereIsNoConnectionButton()
{
    const Transfer transfer;
    transfer.view->show();
    QVERIFY(transfer.connectionButton()->isHidden());
    QCOMPARE(transfer.connectionButton()->text(), u"Andere Verbindung probieren"_s);
}

void tst_VXLocalUploadServiceView::withThreeAddressesTheButtonCounts()
{
    QCOMPARE(VXLan::addInterface(u"lan1"_s, {u"10.81.0.1/24"_s}), QString());
    QCOMPARE(VXLan::addInterface(u"lan2"_s, {u"10.82.0.1/24"_s}), QString());
    const Transfer transfer;
    transfer.view->show();
    QVERIFY(transfer.connectionButton()->isVisible());

    QStringList texts{transfer.connectionButton()->text()};
    QStringList hosts{transfer.code()->url().host()};
    for (int click = 0; click < 3; ++click) {
        transfer.connectionButton()->click();
        texts.append(transfer.connectionButton()->text());
        hosts.append(transfer.code()->url().host());
    }
    QCOMPARE(texts, QStringList({u"Verbindung 1 von 3"_s, u"Verbindung 2 von 3"_s,
                                 u"Verbindung 3 von 3"_s, u"Verbindung 1 von 3"_s}));
    QCOMPARE(hosts, QStringList({u"10.77.0.1"_s, u"10.81.0.1"_s, u"10.82.0.1"_s, u"10.77.0.1"_s}));
}

void tst_VXLocalUploadServiceView::aButtonHiddenAgainKeepsItsText()
{
    const Transfer transfer;
    transfer.view->show();
    transfer.view->onUrlChanged(QUrl(u"http://10.0.0.1:1/?ABCDE"_s), {}, 1, 2);
    QVERIFY(transfer.connectionButton()->isVisible());
    QCOMPARE(transfer.connectionButton()->text(), u"Verbindung 2 von 2"_s);
    transfer.view->onUrlChanged(QUrl(u"http://10.0.0.1:1/?ABCDE"_s), {}, 0, 1);
    QVERIFY(transfer.connectionButton()->isHidden());
    QCOMPARE(transfer.connectionButton()->text(), u"Verbindung 2 von 2"_s);
}

void tst_VXLocalUploadServiceView::withWiredConnectionsOnlyTheNetworkLabelIsHidden()
{
    const Transfer transfer;
    transfer.view->show();
    QVERIFY(transfer.networkLabel()->isHidden());
    transfer.view->onUrlChanged(QUrl(), u"WLAN"_s, 0, 1);
    QVERIFY(transfer.networkLabel()->isVisible());
    QCOMPARE(transfer.networkLabel()->text(), u"WLAN"_s);
    transfer.view->onUrlChanged(QUrl(), {}, 0, 1);
    QVERIFY(transfer.networkLabel()->isHidden());
    QCOMPARE(transfer.networkLabel()->text(), u"WLAN"_s);
}

void tst_VXLocalUploadServiceView::theNetworkIsShownAsPlainText()
{
    VXDeploymentConfig::instance()->setList(u"Platform/wifiNames"_s,
                                            {u"lan0=<b>x</b><img src=a>"_s});
    const Transfer transfer;
    transfer.view->show();
    QCOMPARE(transfer.networkLabel()->text(), u"<b>x</b><img src=a>"_s);
    QCOMPARE(transfer.networkLabel()->textFormat(), Qt::PlainText);
    QVERIFY(transfer.networkLabel()->wordWrap());
    QCOMPARE(transfer.code()->wifiName(), u"<b>x</b><img src=a>"_s);
}

void tst_VXLocalUploadServiceView::withoutInterfaceTheReasonIsShown()
{
    QCOMPARE(VXLan::ip(u"address flush dev lan0"_s), QString());
    const Transfer transfer;
    transfer.view->show();
    QCOMPARE(transfer.networkLabel()->text(),
             u"Es konnte keine Schnittstelle für eingehende Netzwerkverbindungen bereitgestellt "
             u"werden.\nBitte überprüfen sie Ihre Firewall und Netzwerkeinstellungen."_s);
    QVERIFY(transfer.networkLabel()->isVisible());
    QVERIFY(transfer.connectionButton()->isHidden());
    QCOMPARE(transfer.code()->url(), QUrl());
    QVERIFY(!transfer.code()->hasCode());
    QVERIFY(transfer.dialog()->width() < 400); // the long text is wrapped
}

void tst_VXLocalUploadServiceView::theTimerRunsWhileTheDialogIsVisible()
{
    Transfer transfer;
    transfer.view->init();
    QVERIFY(!transfer.timer()->isActive());
    transfer.view->show();
    QVERIFY(transfer.timer()->isActive());
    transfer.actions.clear();
    const QUrl url = transfer.service()->url();

    transfer.dialog()->hide();
    QVERIFY(!transfer.timer()->isActive());
    transfer.dialog()->show();
    QVERIFY(transfer.timer()->isActive());
    transfer.dialog()->close();
    QVERIFY(!transfer.timer()->isActive());

    // The service has neither stopped nor started again.
    QCOMPARE(transfer.actions, QStringList());
    QCOMPARE(transfer.service()->url(), url);
    VXPlainHttpClient phone(QHostAddress(url.host()), static_cast<quint16>(url.port()));
    QCOMPARE(phone.ask("GET /translations.json?" + url.query().toLatin1()).status, 200);
    QVERIFY(transfer.code()->url() != url); // and shows the next token
}

void tst_VXLocalUploadServiceView::theTimerAsksForNewConnections()
{
    const Transfer transfer;
    transfer.view->show();
    QCOMPARE(VXLan::addInterface(u"lan1"_s, {u"10.81.0.1/24"_s}), QString());
    transfer.timer()->setInterval(10);
    QTRY_VERIFY(transfer.connectionButton()->isVisible());
    QCOMPARE(transfer.connectionButton()->text(), u"Verbindung 1 von 2"_s);
}

void tst_VXLocalUploadServiceView::theEventFilterConsumesNothing()
{
    const Transfer transfer;
    transfer.view->init();
    QObject other;
    for (const QEvent::Type type : {QEvent::Show, QEvent::Hide, QEvent::Close, QEvent::User}) {
        QEvent event(type);
        QVERIFY(!transfer.view->eventFilter(transfer.dialog(), &event));
        QVERIFY(!transfer.view->eventFilter(&other, &event));
    }
    QEvent show(QEvent::Show);
    transfer.view->eventFilter(&other, &show); // somebody else's
    QVERIFY(!transfer.timer()->isActive());
}

void tst_VXLocalUploadServiceView::theDialogAppearsBelowTheAnchor()
{
    Transfer transfer;
    QPushButton anchor(&transfer.window);
    anchor.setGeometry(40, 50, 120, 30);
    transfer.window.setGeometry(200, 100, 300, 200);
    transfer.window.show();
    QVERIFY(QTest::qWaitForWindowExposed(&transfer.window));

    transfer.view->setAnchorWidget(&anchor);
    transfer.view->show();
    QCOMPARE(transfer.dialog()->pos(), transfer.window.mapToGlobal(QPoint(40, 80)));
}

void tst_VXLocalUploadServiceView::aChosenFolderIsTaken()
{
    Transfer transfer;
    transfer.view->show();
    transfer.actions.clear();
    const QString chosen = myFolder->path();
    const VXDialogVisitor visitor([&](QDialog* theDialog) {
        auto* const chooser = qobject_cast<QFileDialog*>(theDialog);
        if (!chooser)
            return;
        QCOMPARE(chooser->windowTitle(), u"Zielverzeichnis wählen"_s);
        QCOMPARE(chooser->parentWidget(), transfer.dialog());
        QVERIFY(chooser->testOption(QFileDialog::ShowDirsOnly));
        QCOMPARE(chooser->directory().absolutePath(),
                 QStandardPaths::writableLocation(QStandardPaths::PicturesLocation));
        chooser->selectFile(chosen);
        chooser->findChild<QLineEdit*>(u"fileNameEdit"_s)->setText(chosen);
        QMetaObject::invokeMethod(chooser, "accept");
    });
    transfer.changeButton()->click();

    QCOMPARE(visitor.count(), 1);
    QCOMPARE(transfer.service()->targetFolder(), chosen);
    QCOMPARE(transfer.folderLine()->text(), chosen);
    QCOMPARE(transfer.actions, QStringList(u"ACTION:chooseTarget "_s + chosen));
}

void tst_VXLocalUploadServiceView::aCancelledChooserChangesNothing()
{
    Transfer transfer;
    transfer.view->show();
    transfer.actions.clear();
    const QString before = transfer.folderLine()->text();
    const VXDialogVisitor visitor([](QDialog* theDialog) { theDialog->reject(); });
    transfer.view->chooseTargetFolder();

    QCOMPARE(visitor.count(), 1);
    QCOMPARE(transfer.folderLine()->text(), before);
    QCOMPARE(transfer.service()->targetFolder(), before);
    QCOMPARE(transfer.actions, QStringList());
}

void tst_VXLocalUploadServiceView::theMainWindowMayTakeTheChooserAlong()
{
    auto window = std::make_unique<QWidget>();
    VXMainWindowHandle::setMainWindow(window.get());
    auto* const view = new VXLocalUploadServiceView(window.get()); // the window's
    view->show();
    const VXDialogVisitor visitor([&window](QDialog*) { window.reset(); });
    view->chooseTargetFolder();
    VXMainWindowHandle::setMainWindow(nullptr);

    QCOMPARE(visitor.count(), 1);
    QVERIFY(!window);
}

void tst_VXLocalUploadServiceView::theViewMayGoWhileTheChooserIsOpen()
{
    Transfer transfer;
    transfer.view->show();
    transfer.actions.clear();
    const VXDialogVisitor visitor([&transfer](QDialog* theDialog) {
        delete transfer.view;
        theDialog->accept();
    });
    transfer.view->chooseTargetFolder();

    QCOMPARE(visitor.count(), 1);
    QCOMPARE(transfer.actions, QStringList());
}

void tst_VXLocalUploadServiceView::logLinesAreAppendedAsHtml()
{
    const Transfer transfer;
    transfer.view->init();
    transfer.logBrowser()->clear();
    transfer.view->log(u"one <b>bold</b>"_s);
    transfer.logBrowser()->moveCursor(QTextCursor::Start); // the end is found again
    transfer.service()->log(u"<a href=\"http://10.0.0.1\">two</a>"_s);

    QCOMPARE(transfer.logBrowser()->toPlainText(), u"one bold\ntwo\n"_s);
    QVERIFY(transfer.logBrowser()->toHtml().contains(u"href=\"http://10.0.0.1\""_s));
}

void tst_VXLocalUploadServiceView::theLogOpensNoFile_data()
{
    QTest::addColumn<QString>("line"); // FILE stands for one that is there

    QTest::newRow("style sheet") << u"SSID:<style>@import \"FILE\";</style>"_s;
    QTest::newRow("linked style sheet") << u"SSID:<link rel=stylesheet type=text/css href=FILE>"_s;
    QTest::newRow("background") << u"SSID:<table background=FILE><tr>"_s;
}

/// The name of a network has room for 32 bytes: the last row with "/dev/zero" in it.
void tst_VXLocalUploadServiceView::theLogOpensNoFile()
{
    QFETCH(QString, line);

    QTemporaryFile file;
    QVERIFY(file.open());
    const int watch = ::inotify_init1(IN_NONBLOCK | IN_CLOEXEC);
    QVERIFY(::inotify_add_watch(watch, qPrintable(file.fileName()), IN_OPEN) >= 0);
    const auto isOpened = [watch] {
        std::array<char, 4096> event;
        return ::read(watch, event.data(), event.size()) > 0;
    };

    const Transfer transfer;
    transfer.view->init();
    transfer.view->log(line.replace(u"FILE"_s, file.fileName()));
    QVERIFY(!isOpened());

    QVERIFY(QFile(file.fileName()).open(QIODevice::ReadOnly));
    QVERIFY(isOpened()); // it would have been noticed
    ::close(watch);
}

void tst_VXLocalUploadServiceView::aLongLogLosesItsOldestPart()
{
    const Transfer transfer;
    transfer.view->init();
    transfer.logBrowser()->clear();
    const QString line(9'999, u'x');
    transfer.view->log(u"the oldest"_s);
    for (int count = 0; count < 60; ++count) {
        transfer.view->log(line);
        QVERIFY(transfer.logBrowser()->document()->characterCount() <= 200'000);
    }
    transfer.view->log(u"the newest"_s);
    const QString text = transfer.logBrowser()->toPlainText();
    QVERIFY(!text.contains(u"the oldest"_s));
    QVERIFY(text.endsWith(u"the newest\n"_s));
    QVERIFY(text.size() > 90'000);
}

void tst_VXLocalUploadServiceView::beforeTheDialogALogLineIsOnlyWritten()
{
    QLoggingCategory::setFilterRules(u"default.debug=true"_s);
    const Transfer transfer;
    const VXLogCapture capture;
    transfer.view->log(u"a \"b\""_s);
    transfer.service()->log(u"twice"_s); // by the service and by the view
    QLoggingCategory::setFilterRules(u"default.debug=false"_s);
    QCOMPARE(capture.texts(QtDebugMsg), QStringList({u"a \"b\""_s, u"twice"_s, u"twice"_s}));
}

void tst_VXLocalUploadServiceView::aReceivedFileIsPassedOn()
{
    const Transfer transfer;
    transfer.view->show();
    transfer.service()->setTargetFolder(myFolder->filePath(u"target"_s));
    QSignalSpy spy(transfer.view, &VXLocalUploadServiceView::filesUploaded);

    const QUrl url = transfer.service()->url();
    VXPlainHttpClient phone(QHostAddress(url.host()), static_cast<quint16>(url.port()));
    const QByteArray token = url.query().toLatin1();
    QCOMPARE(phone.ask("GET /translations.json?" + token).status, 200);
    QCOMPARE(phone.ask("POST /upload?file=a.jpg", {"Cookie: sid=" + token}, "photo").status, 200);
    QCOMPARE(spy.count(), 1);
    QCOMPARE(spy.at(0).at(0).value<QFileInfo>().filePath(),
             myFolder->filePath(u"target/a.qrul.jpg"_s));
    QCOMPARE(transfer.folderLine()->text(), myFolder->filePath(u"target"_s));
}

void tst_VXLocalUploadServiceView::theDialogIsTheMainWindows()
{
    Transfer transfer;
    transfer.view->show();
    const QPointer<QDialog> dialog = transfer.dialog();
    delete transfer.view;
    QVERIFY(dialog);
    dialog->show(); // nobody watches any more
    dialog->hide();
}

void tst_VXLocalUploadServiceView::noCodeOutlivesTheView()
{
    Transfer transfer;
    transfer.view->show();
    const QPointer<QDialog> dialog = transfer.dialog();
    const QPointer<VXQRCodeWidget> code = transfer.code();
    QVERIFY(code->hasCode());
    delete transfer.view;
    QVERIFY(!dialog->isVisible());
    QVERIFY(!code->hasCode());
}

void tst_VXLocalUploadServiceView::withoutMainWindowTheDialogStandsAlone()
{
    Transfer transfer;
    VXMainWindowHandle::setMainWindow(nullptr);
    transfer.view->show();
    std::unique_ptr<QDialog> alone;
    for (QWidget* const widget : QApplication::topLevelWidgets()) {
        if (widget->windowTitle() == u"QR-Code scannen")
            alone.reset(qobject_cast<QDialog*>(widget));
    }
    QVERIFY(alone);
    QCOMPARE(alone->parentWidget(), nullptr);

    // Should somebody delete the dialog, the next show() makes another.
    VXMainWindowHandle::setMainWindow(&transfer.window);
    alone.reset();
    transfer.view->show();
    QVERIFY(transfer.dialog()->isVisible());
}

void tst_VXLocalUploadServiceView::boldifyWrapsTheText()
{
    const Transfer transfer;
    QCOMPARE(transfer.view->boldify(u"a %1"_s), u"<b>a %1</b>"_s);
}

void tst_VXLocalUploadServiceView::itLooksRight_data()
{
    QTest::addColumn<bool>("dark");
    QTest::addColumn<bool>("connected");

    QTest::newRow("light") << false << true;
    QTest::newRow("dark") << true << true;
    QTest::newRow("light-no-interface") << false << false;
    QTest::newRow("dark-no-interface") << true << false;
}

/// The pictures are for a person; the test only reads the code in them.
void tst_VXLocalUploadServiceView::itLooksRight()
{
    QFETCH(bool, dark);
    QFETCH(bool, connected);

    if (connected)
        QCOMPARE(VXLan::addInterface(u"lan1"_s, {u"192.168.178.23/24"_s}), QString());
    else
        QCOMPARE(VXLan::ip(u"address flush dev lan0"_s), QString());
    VXDeploymentConfig::instance()->setList(u"Platform/wifiNames"_s,
                                            {u"lan1=Familie Müller 5 GHz"_s});
    Transfer transfer;
    const QPalette before = QApplication::palette();
    if (dark)
        QApplication::setPalette(darkPalette());
    transfer.view->show();
    QVERIFY(QTest::qWaitForWindowExposed(transfer.dialog()));
    const QString file =
        u"%1/%2.png"_s.arg(outputFolder, QString::fromLatin1(QTest::currentDataTag()));
    const auto decoded = [&] {
        transfer.dialog()->grab().save(file);
        QProcess zbar;
        zbar.start(u"zbarimg"_s, {u"-q"_s, u"--raw"_s, u"--nodbus"_s, file});
        zbar.waitForFinished(30000);
        return QString::fromUtf8(zbar.readAllStandardOutput()).trimmed();
    };
    const QString expected = connected ? transfer.service()->url().toString() : QString();
    // The corner of the code is fully white once the entry animation is over.
    QTRY_COMPARE(transfer.code()->grab().toImage().pixelColor(0, 0), QColor(Qt::white));
    QCOMPARE(decoded(), expected);
    QApplication::setPalette(before);
}

VX_TEST_MAIN(QApplication, tst_VXLocalUploadServiceView)
#include "tst_VXLocalUploadServiceView.moc"
