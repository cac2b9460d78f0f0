#pragma once

#include "VXProcessMeter.h"

#include <QtCore/QObject>
#include <QtCore/QString>
#include <QtCore/QUrl>

#include <memory>

class QHttpServer;
class VXLocalUploadService;

/// The measured process: it receives photos, and answers one line on standard output to each line
/// on standard input: "url" with the address for the next phone, "begin" (of a measurement) with
/// "ok", "end" with the measurement as JSON.
class VXUploadTarget : public QObject
{
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(VXUploadTarget)

public:
    VXUploadTarget();
    ~VXUploadTarget() override;

    /// Starts the service of the library, which saves into theFolder.
    void startService(const QString& theFolder);

    /// Starts the yardstick: a route of QHttpServer that saves with QSaveFile and nothing else.
    void startBareRoute(const QString& theFolder);

private:
    void answerCommand();

    VXProcessMeter myMeter;
    std::unique_ptr<VXLocalUploadService> myService;
    std::unique_ptr<QHttpServer> myServer;
    QUrl myUrl;
};
