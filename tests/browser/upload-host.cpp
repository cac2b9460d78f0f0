// The upload service in a program without windows, for the tests in a browser.
//
//   upload-host --assets DIR --target DIR
//
// Writes one JSON object per line to standard output: "urlChanged" (url, port), "filesUploaded"
// (path, size), "doLog" (text), and "started" once. Ends when its standard input does, so that it
// never outlives the test.

#include "VXTestEnvironment.h"

#include <VXCore/VXDeploymentConfig.h>
#include <VXNetworking/VXLocalUploadService.h>

#include <QtCore/QCommandLineParser>
#include <QtCore/QCoreApplication>
#include <QtCore/QJsonDocument>
#include <QtCore/QJsonObject>
#include <QtCore/QSocketNotifier>

#include <cstdio>

#include <unistd.h>

using namespace Qt::StringLiterals;

namespace {

void report(const QString& theEvent, QJsonObject theDetails = {})
{
    theDetails.insert("event"_L1, theEvent);
    const QByteArray line = QJsonDocument(theDetails).toJson(QJsonDocument::Compact) + '\n';
    std::fwrite(line.constData(), 1, static_cast<size_t>(line.size()), stdout);
    std::fflush(stdout);
}

void reportSignals(VXLocalUploadService& theService)
{
    QObject::connect(
        &theService, &VXLocalUploadService::urlChanged, &theService, [](const QUrl& theUrl) {
            report(u"urlChanged"_s,
                   {{u"url"_s, theUrl.toString(QUrl::FullyEncoded)}, {u"port"_s, theUrl.port()}});
        });
    QObject::connect(&theService, &VXLocalUploadService::filesUploaded, &theService,
                     [](const QFileInfo& theFile) {
                         report(u"filesUploaded"_s,
                                {{u"path"_s, theFile.filePath()}, {u"size"_s, theFile.size()}});
                     });
    QObject::connect(&theService, &VXLocalUploadService::doLog, &theService,
                     [](const QString& theText) {
                         report(u"doLog"_s, {{u"text"_s, theText}});
                     });
}

void endWithStandardInput(QSocketNotifier& theNotifier)
{
    QObject::connect(&theNotifier, &QSocketNotifier::activated, &theNotifier, [] {
        char byte = 0;
        if (::read(STDIN_FILENO, &byte, 1) <= 0)
            QCoreApplication::quit();
    });
}

} // namespace

int main(int theArgumentCount, char* theArguments[])
{
    const VXTestEnvironment environment;
    QCoreApplication application(theArgumentCount, theArguments);
    const QCommandLineOption assets(u"assets"_s, u"Folder of the page"_s, u"DIR"_s);
    const QCommandLineOption target(u"target"_s, u"Folder for the photos"_s, u"DIR"_s);
    QCommandLineParser parser;
    parser.addOptions({assets, target});
    parser.process(application);

    VXDeploymentConfig::instance()->setValue(u"Assets/qrUpload"_s, parser.value(assets));
    VXLocalUploadService service(nullptr);
    reportSignals(service);
    service.setTargetFolder(parser.value(target));
    service.start();
    report(u"started"_s);

    QSocketNotifier input(STDIN_FILENO, QSocketNotifier::Read);
    endWithStandardInput(input);
    return QCoreApplication::exec();
}
