#pragma once

#include <QtCore/QJsonObject>
#include <QtCore/QObject>
#include <QtCore/QUrl>

class QFileInfo;
class VXLocalUploadService;
class VXSampleOutput;

/// Writes one event per signal of an upload service, named after the signal, and "redeemed" when
/// a phone has used the published address.
class VXSampleUploadEvents : public QObject
{
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(VXSampleUploadEvents)

public:
    /// Both must outlive this object.
    VXSampleUploadEvents(VXLocalUploadService& theService, VXSampleOutput& theOutput);
    ~VXSampleUploadEvents() override;

    /// How many photos were stored, and their bytes together.
    [[nodiscard]] QJsonObject summary() const;

private:
    void onFilesUploaded(const QFileInfo& theFile);
    void onUrlChanged(const QUrl& theUrl, const QString& theWifiName, int theIndex, int theCount);

    VXSampleOutput& myOutput;
    QUrl myUrl;
    int myFileCount = 0;
    qint64 myByteCount = 0;
};
