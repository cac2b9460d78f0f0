#include "VXUploadTarget.h"

#include <VXCore/VXLogger.h>
#include <VXNetworking/VXLocalUploadService.h>

#include <QtCore/QCoreApplication>
#include <QtCore/QJsonDocument>
#include <QtCore/QSaveFile>
#include <QtCore/QSocketNotifier>
#include <QtCore/QTextStream>
#include <QtCore/QUrlQuery>
#include <QtHttpServer/QHttpServer>
#include <QtNetwork/QHostAddress>

#include <iostream>
#include <string>

#include <unistd.h>

using namespace Qt::StringLiterals;

VXUploadTarget::VXUploadTarget()
{
    // One command at a time is under way, so a line is never left behind in a buffer.
    auto* const input = new QSocketNotifier(STDIN_FILENO, QSocketNotifier::Read, this);
    connect(input, &QSocketNotifier::activated, this, &VXUploadTarget::answerCommand);
}

VXUploadTarget::~VXUploadTarget() = default;

void VXUploadTarget::startService(const QString& theFolder)
{
    VXLogger::instance()->setFolder(theFolder + u"/log"_s);
    myService = std::make_unique<VXLocalUploadService>(nullptr);
    connect(myService.get(), &VXLocalUploadService::urlChanged, this,
            [this](const QUrl& theUrl) { myUrl = theUrl; });
    myService->setTargetFolder(theFolder + u"/photos"_s);
    myService->start();
}

void VXUploadTarget::startBareRoute(const QString& theFolder)
{
    myServer = std::make_unique<QHttpServer>();
    // The phones ask this first, to introduce themselves.
    myServer->route(u"/translations.json"_s, [] { return u"{}"_s; });
    const QString folder = theFolder + u"/photos/"_s;
    myServer->route(u"/upload"_s, [folder](const QHttpServerRequest& theRequest) {
        QSaveFile file(folder + theRequest.query().queryItemValue(u"file"_s));
        if (file.open(QIODevice::WriteOnly)) {
            file.write(theRequest.body());
            file.commit();
        }
        return u"OK"_s;
    });
    const QString address = u"10.77.0.1"_s; // what script/in-namespace gives this computer
    const quint16 port = myServer->listen(QHostAddress(address));
    myUrl = QUrl(u"http://%1:%2/?none"_s.arg(address).arg(port));
}

void VXUploadTarget::answerCommand()
{
    std::string command;
    if (!std::getline(std::cin, command)) {
        QCoreApplication::quit();
        return;
    }
    QTextStream output(stdout);
    if (command == "url") {
        output << myUrl.toString() << Qt::endl;
    } else if (command == "begin") {
        output << "ok" << Qt::endl;
        myMeter.begin();
    } else if (command == "end") {
        output << QJsonDocument(myMeter.end()).toJson(QJsonDocument::Compact) << Qt::endl;
    }
}
