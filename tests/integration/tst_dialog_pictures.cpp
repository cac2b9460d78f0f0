// Every dialog as the customer sees it, in both skins, at the usual and at the double font size.
// The pictures go to the build's tests-output/dialogs; what can be measured is tested.

#include <VXCore/VXDeploymentConfig.h>
#include <VXCore/VXDirectoryConfig.h>
#include <VXGUIWidgets/VXCSSSkinManager.h>
#include <VXGUIWidgets/VXDialog.h>
#include <VXGUIWidgets/VXDialogConfig.h>
#include <VXGUIWidgets/VXProgressDialogController.h>
#include <VXGUIWidgets/VXUrlSearchBar.h>
#include <VXNetworking/VXNetworkingError.h>
#include <VXNetworking/VXPreferencesProxy.h>
#include <VXNetworking/VXRequestNetwork.h>

#include "VXDialogVisitor.h"
#include "VXTestMain.h"

#include <QtCore/QDir>
#include <QtCore/QUrl>
#include <QtGui/QScreen>
#include <QtNetwork/QAuthenticator>
#include <QtWidgets/QAbstractButton>
#include <QtWidgets/QApplication>
#include <QtWidgets/QCommandLinkButton>
#include <QtWidgets/QLabel>
#include <QtWidgets/QMessageBox>
#include <QtWidgets/QProgressDialog>
#include <QtWidgets/QTextEdit>
#include <QtWidgets/QVBoxLayout>

#include <functional>

using namespace Qt::StringLiterals;

namespace {

VXRequestNetwork& mediator()
{
    return *VXRequestNetwork::instance();
}

void handle(int theCode)
{
    VXNetworkingError error;
    error.raise(static_cast<VXNetworkingErrorCode>(theCode), u"Antwort des Servers"_s);
    (void)mediator().handleNetworkError(error);
}

void refuseLogin(int theSeconds)
{
    VXNetworkingError error;
    error.raise(InvalidLogin, {}, {}, theSeconds);
    mediator().handleInvalidLoginError(error);
}

void openProgress()
{
    VXProgressDialogController progress;
    progress.openProgress(u"Bitte warten, Verbindung zu Tessarim wird hergestellt ..."_s, 0, 0,
                          nullptr);
    QCoreApplication::processEvents();
}

void showInDialog(const QString& theHeadline, const std::function<QWidget*(QWidget*)>& theContent)
{
    VXDialog dialog;
    VXDialogConfig config;
    config.headline = {theHeadline, !theHeadline.isEmpty()};
    config.standardButtons = QDialogButtonBox::Ok | QDialogButtonBox::Cancel;
    config.defaultButton = QDialogButtonBox::Ok;
    dialog.setupDialog(config);
    dialog.setWindowTitle(u"Vorschau"_s);
    auto* layout = new QVBoxLayout(dialog.mainArea());
    layout->addWidget(theContent(dialog.mainArea()));
    dialog.exec();
}

struct Picture
{
    const char* name;
    void (*show)();
};

constexpr std::array pictures{
    Picture{"connection", [] { handle(3503); }},
    Picture{"remote-system", [] { handle(1000); }},
    Picture{"auto-recover", [] { handle(1005); }},
    Picture{"unspecific", [] { handle(4); }},
    Picture{"user-input", [] { handle(5); }},
    Picture{"payment", [] { handle(655); }},
    Picture{"login-refused", [] { refuseLogin(0); }},
    Picture{"login-wait", [] { refuseLogin(1); }},
    Picture{"tls-question",
            [] {
                (void)mediator().askIgnoreSSLErrors(
                    u"photos.test:443"_s,
                    {u"Das Zertifikat ist selbst-signiert und daher nicht vertrauenswürdig"_s,
                     u"Der Name des Hosts ist keiner aus der Liste der für dieses Zertifikat "
                     u"gültigen Hosts"_s});
            }},
    Picture{"tls-warning",
            [] {
                mediator().showSSLErrorWarning(u"photos.test:443"_s,
                                               u"Die Gültigkeit des Zertifikats ist abgelaufen"_s);
            }},
    Picture{"server-login",
            [] {
                QAuthenticator authenticator;
                mediator().handleAuthenticationRequest(
                    QUrl(u"https://photos.test/customer/orders?page=1"_s), &authenticator);
            }},
    Picture{"proxy-login",
            [] {
                QAuthenticator authenticator;
                mediator().handleProxyAuthenticationRequest(QUrl(), &authenticator,
                                                            u"proxy.test"_s);
            }},
    Picture{"up-to-date", [] { mediator().updateNotNecessary(); }},
    Picture{"update-failed", [] { mediator().warnUpdateError(); }},
    Picture{"update-ready",
            [] {
                bool quit = false;
                mediator().finishProgramForUpdate(&quit);
            }},
    Picture{"phase-out",
            [] { mediator().showPhaseOutMessage(u"Bitte laden Sie die neue Software."_s); }},
    Picture{"prices", [] { mediator().productListUpdateFinished(true); }},
    Picture{"restart", [] { mediator().softwareMustBeRestarted(); }},
    Picture{"progress", openProgress},
    Picture{"preferences",
            [] {
                showInDialog({}, [](QWidget* theParent) {
                    auto* page = new VXPreferencesProxy(theParent);
                    page->setChoice(ProxyChoiceManual);
                    page->setProxy(u"proxy.test"_s);
                    page->setPort(3128);
                    return page;
                });
            }},
    Picture{"headline",
            [] {
                showInDialog(u"Ihre Rechnung"_s, [](QWidget* theParent) {
                    auto* bar = new VXUrlSearchBar(theParent);
                    bar->urlHasChanged(QUrl(u"https://photos.test/invoice"_s));
                    return bar;
                });
            }},
};

/// Labels whose text is cut off.
QStringList cutOff(const QDialog* theDialog)
{
    QStringList texts;
    const auto buttons = theDialog->findChildren<QAbstractButton*>();
    for (const QAbstractButton* button : buttons) {
        const bool isLink = qobject_cast<const QCommandLinkButton*>(button) != nullptr;
        const bool isTooSmall = isLink ? button->height() < button->heightForWidth(button->width())
                                       : button->width() < button->minimumSizeHint().width();
        if (button->isVisible() && !button->text().isEmpty() && isTooSmall)
            texts << button->text();
    }
    const auto labels = theDialog->findChildren<QLabel*>();
    for (const QLabel* label : labels) {
        if (label->isVisible() && label->wordWrap() &&
            label->height() < label->heightForWidth(label->width()))
            texts << label->text();
    }
    return texts;
}

} // namespace

class tst_dialog_pictures : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void cleanup();

    void everyDialogIsReadable_data();
    void everyDialogIsReadable();

private:
    QDir myFolder{QStringLiteral(VX_BINARY_DIR "/tests-output/dialogs")};
    QFont myFont;
};

void tst_dialog_pictures::initTestCase()
{
    QVERIFY(myFolder.mkpath(u"."_s));
    auto* deployment = VXDeploymentConfig::instance();
    deployment->setValue(u"Assets/skin"_s, QStringLiteral(VX_SOURCE_DIR "/assets/skin.qss"));
    deployment->setValue(u"Program/version"_s, u"7.4.1"_s);
    VXDirectoryConfig::instance()->setRoot(VXDirectoryConfig::Root::Icons,
                                           QStringLiteral(VX_SOURCE_DIR "/assets/icons"));
    myFont = QApplication::font();
    QApplication::setQuitOnLastWindowClosed(false);
}

void tst_dialog_pictures::cleanup()
{
    VXCSSSkinManager::instance()->setMode(VXCSSSkinManager::Unset);
    QApplication::setFont(myFont);
}

void tst_dialog_pictures::everyDialogIsReadable_data()
{
    QTest::addColumn<int>("picture");
    QTest::addColumn<int>("mode");
    QTest::addColumn<int>("percent");

    for (int i = 0; i < int(pictures.size()); ++i) {
        for (int mode : {1, 2}) {
            for (int percent : {100, 200})
                QTest::addRow("%s-%s-%d", pictures.at(size_t(i)).name, mode == 1 ? "light" : "dark",
                              percent)
                    << i << mode << percent;
        }
    }
}

void tst_dialog_pictures::everyDialogIsReadable()
{
    QFETCH(int, picture);
    QFETCH(int, mode);
    QFETCH(int, percent);

    QFont font = myFont;
    font.setPointSizeF(myFont.pointSizeF() * percent / 100);
    QApplication::setFont(font);
    VXCSSSkinManager::instance()->setMode(mode);

    const QString file =
        myFolder.filePath(QString::fromLatin1(QTest::currentDataTag()) + u".png"_s);
    QFile::remove(file);
    QStringList cut;
    QRect geometry;
    VXDialogVisitor user([&](QDialog* theDialog) {
        cut = cutOff(theDialog);
        theDialog->grab().save(file);
        if (auto* box = qobject_cast<QMessageBox*>(theDialog)) {
            const auto buttons = box->buttons();
            for (QAbstractButton* button : buttons) {
                if (box->buttonRole(button) == QMessageBox::ActionRole) {
                    button->click(); // the details
                    QCoreApplication::processEvents();
                    theDialog->grab().save(QString(file).replace(u".png"_s, u"-details.png"_s));
                }
            }
        }
        geometry = theDialog->frameGeometry();
        theDialog->close();
    });
    pictures.at(size_t(picture)).show();

    QVERIFY(user.count() >= 1);
    QVERIFY(QFile::exists(file));
    QCOMPARE(cut, QStringList());
    const QRect screen = QApplication::primaryScreen()->availableGeometry();
    QVERIFY2(geometry.width() <= screen.width() && geometry.height() <= screen.height(),
             qPrintable(u"%1 x %2"_s.arg(geometry.width()).arg(geometry.height())));
}

VX_TEST_MAIN(QApplication, tst_dialog_pictures)

#include "tst_dialog_pictures.moc"
