#include "VXTourUploadSteps.h"

#include "VXSampleExchange.h"
#include "VXTourRun.h"
#include "VXTourWebPage.h"

#include <VXCore/VXDeploymentConfig.h>
#include <VXCore/VXMainWindowHandle.h>
#include <VXNetworking/VXLocalUploadService.h>
#include <VXNetworking/VXLocalUploadServiceView.h>

#include <QtCore/QBuffer>
#include <QtCore/QEventLoop>
#include <QtCore/QFile>
#include <QtCore/QProcess>
#include <QtCore/QTimer>
#include <QtGui/QImage>
#include <QtWebEngineWidgets/QWebEngineView>
#include <QtWidgets/QDialog>

using namespace Qt::StringLiterals;

namespace {

constexpr int phoneMilliseconds = 30'000;

bool hasPhones()
{
    return qEnvironmentVariableIntValue("VX_NAMESPACE") == 1 &&
           qEnvironmentVariableIntValue("VX_PHONES") >= 1;
}

/// The dialog as an application shows it, with what an application needs for it.
class Dialog
{
    Q_DISABLE_COPY_MOVE(Dialog)

public:
    explicit Dialog(const QString& theTarget)
        : view(nullptr)
        , service(*view.findChild<VXLocalUploadService*>())
    {
        VXDeploymentConfig::instance()->setValue(u"Gui/animations"_s, u"false"_s);
        VXMainWindowHandle::setMainWindow(&window);
        service.setTargetFolder(theTarget);
        view.show();
        widget = window.findChild<QDialog*>();
    }
    ~Dialog()
    {
        VXMainWindowHandle::setMainWindow(nullptr);
        VXDeploymentConfig::instance()->setValue(u"Gui/animations"_s, u"true"_s);
    }

    QWidget window;
    VXLocalUploadServiceView view;
    VXLocalUploadService& service;
    QDialog* widget = nullptr; // child of the window
};

/// Runs a program as the phone and returns what it printed. The service answers meanwhile.
QString asPhone(const QStringList& theCommand)
{
    QProcess phone;
    QEventLoop loop;
    QObject::connect(&phone, &QProcess::finished, &loop, &QEventLoop::quit);
    QTimer::singleShot(phoneMilliseconds, &loop, &QEventLoop::quit);
    phone.start(u"nsenter"_s, QStringList{u"--net=/run/netns/phone1"_s} + theCommand);
    if (phone.waitForStarted())
        loop.exec();
    if (phone.state() != QProcess::NotRunning)
        phone.kill();
    phone.waitForFinished();
    return QString::fromUtf8(phone.readAllStandardOutput()).trimmed();
}

QByteArray photo()
{
    QImage image(800, 600, QImage::Format_RGB32);
    image.fill(QColor(240, 200, 120));
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    image.save(&buffer, "JPG");
    return bytes;
}

/// The page in the size of a phone. The program's own engine draws it, as a phone's browser would.
void photographPage(VXTourRun& theRun, const QUrl& theUrl)
{
    QWebEngineView phone;
    phone.resize(390, 740);
    phone.show();
    phone.setUrl(theUrl);
    // The page asks for its texts after it is loaded.
    const QString isReady = u"!!document.getElementById('greeting')?.innerText && "
                            "[...document.images].every(image => image.complete)"_s;
    theRun.expect(VXTourWebPage::waitUntilTrue(phone, isReady), u"the phone's page did not come"_s);
    theRun.expect(VXTourWebPage::waitUntilDrawn(phone), u"the phone's page is not drawn"_s);
    theRun.photograph(&phone, u"35-phone-page.png"_s);
}

void receivePhoto(VXTourRun& theRun)
{
    if (!hasPhones()) {
        theRun.came(u"left out: only inside script/in-namespace"_s);
        return;
    }
    const QDir& folder = theRun.world.folder;
    Dialog dialog(folder.filePath(u"36-received"_s));
    const QUrl first = dialog.service.url();
    theRun.expect(first.host() == u"10.77.0.1"_s, u"the address is %1"_s.arg(first.toString()));
    theRun.photograph(dialog.widget, u"34-upload-dialog.png"_s);

    QFile file(folder.filePath(u"36-photo.jpg"_s));
    theRun.expect(file.open(QIODevice::WriteOnly) && file.write(photo()) > 0,
                  u"cannot write the photo"_s);
    file.close();
    const QString cookies = folder.filePath(u"phone-cookies"_s);
    const QString target = u"http://%1/upload?file=Strand.jpg"_s.arg(first.authority());
    const QStringList curl{u"curl"_s, u"-s"_s, u"-o"_s, u"/dev/null"_s, u"-w"_s, u"%{http_code}"_s};
    theRun.expectEqual<QString>(u"first visit"_s,
                                asPhone(curl + QStringList{u"-c"_s, cookies, first.toString()}),
                                u"200"_s);
    theRun.expectEqual<QString>(u"upload"_s,
                                asPhone(curl + QStringList{u"-b"_s, cookies, u"--data-binary"_s,
                                                           u'@' + file.fileName(), target}),
                                u"200"_s);
    theRun.expectEqual<QString>(
        u"upload without a cookie"_s,
        asPhone(curl + QStringList{u"--data-binary"_s, u"@"_s + file.fileName(), target}),
        u"403"_s);
    QFile::remove(cookies);

    QFile stored(folder.filePath(u"36-received/Strand.qrul.jpg"_s));
    theRun.expect(stored.open(QIODevice::ReadOnly), u"the photo was not stored"_s);
    theRun.expectEqual<QString>(u"SHA-256 of the stored photo"_s,
                                VXSampleExchange::sha256(stored.readAll()),
                                VXSampleExchange::sha256(photo()));
    theRun.came(u"Strand.qrul.jpg, %1 bytes; without a cookie 403"_s.arg(stored.size()));
    photographPage(theRun, dialog.service.url());
}

void showNoInterface(VXTourRun& theRun)
{
    if (!hasPhones()) {
        theRun.came(u"left out: only inside script/in-namespace"_s);
        return;
    }
    QProcess::execute(u"ip"_s, {u"link"_s, u"set"_s, u"lan0"_s, u"down"_s});
    {
        Dialog dialog(theRun.world.folder.filePath(u"36-received"_s));
        theRun.expectEqual<QString>(u"host of the address"_s, dialog.service.url().host(),
                                    QString());
        theRun.photograph(dialog.widget, u"37-no-interface.png"_s);
        theRun.came(u"the dialog says that there is no network"_s);
    }
    QProcess::execute(u"ip"_s, {u"link"_s, u"set"_s, u"lan0"_s, u"up"_s});
}

} // namespace

QList<VXTourStep> VXTourUploadSteps::steps()
{
    return {{u"upload"_s, u"Photo from a phone"_s, receivePhoto},
            {u"upload"_s, u"Photo transfer without a network"_s, showNoInterface}};
}
