#pragma once

#include "VXBenchNginx.h"
#include "VXTestCertificates.h"

#include <QtCore/QProcess>
#include <QtCore/QString>

#include <memory>
#include <optional>
#include <vector>

/// How much is sent, by how many at once.
struct VXUploadLoad
{
    int phones = 8;
    int photos = 50; // of all phones together
    qint64 bytes = 5'000'000;
    QString folder;                        // in which each run makes a folder of its own
    VXTestCertificates::Identity identity; // for nginx, which wants one although nobody uses TLS
};

/// What one run has measured.
struct VXUploadLoadResult
{
    double megabytesPerSecond = 0; // from the first byte sent to the last answer
    double memoryBytes = 0;        // peak of the server above what it held before
    double blockMs = 0;            // longest time the server's event loop stood still
    double cpuSeconds = 0;         // of the server's process
};

/// One run: a fresh server process, and each phone a process in a network namespace of its own.
class VXUploadLoadRun
{
    Q_DISABLE_COPY_MOVE(VXUploadLoadRun)

public:
    explicit VXUploadLoadRun(const VXUploadLoad& theLoad);
    ~VXUploadLoadRun();

    /// theServer is "service", "bare" or "nginx", which tells nothing but its throughput. None when
    /// something went wrong; error() tells what.
    std::optional<VXUploadLoadResult> measure(const QString& theServer);

    [[nodiscard]] QString error() const { return myError; }

private:
    std::optional<VXUploadLoadResult> measureNginx();
    bool startPhones(const QString& theFixedUrl = {});
    [[nodiscard]] double megabytesPerSecond(double theSeconds) const;
    std::optional<double> seconds();
    bool hasEveryPhoto(const QString& theFolder);
    QByteArray ask(QProcess& theProcess, const QByteArray& theLine);

    VXUploadLoad myLoad;
    QProcess myServer;
    std::vector<std::unique_ptr<QProcess>> myPhones;
    QString myError;
};
