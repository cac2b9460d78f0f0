#include "VXSampleUploadEvents.h"

#include "VXSampleOutput.h"

#include <VXNetworking/VXLocalUploadService.h>

#include <QtCore/QFileInfo>

using namespace Qt::StringLiterals;

VXSampleUploadEvents::VXSampleUploadEvents(VXLocalUploadService& theService,
                                           VXSampleOutput& theOutput)
    : myOutput(theOutput)
{
    connect(&theService, &VXLocalUploadService::filesUploaded, this,
            &VXSampleUploadEvents::onFilesUploaded);
    connect(&theService, &VXLocalUploadService::urlChanged, this,
            &VXSampleUploadEvents::onUrlChanged);
    connect(&theService, &VXLocalUploadService::targetFolderChanged, this,
            [this](const QString& theFolder) {
                myOutput.event(u"targetFolderChanged"_s, {{u"folder"_s, theFolder}});
            });
    connect(&theService, &VXLocalUploadService::doLog, this, [this](const QString& theText) {
        myOutput.event(u"doLog"_s, {{u"text"_s, theText}});
    });
}

VXSampleUploadEvents::~VXSampleUploadEvents() = default;

QJsonObject VXSampleUploadEvents::summary() const
{
    return {{u"files"_s, myFileCount}, {u"bytes"_s, myByteCount}};
}

void VXSampleUploadEvents::onFilesUploaded(const QFileInfo& theFile)
{
    // The signal comes even when the disk was full.
    const bool isStored = theFile.isFile();
    if (isStored) {
        ++myFileCount;
        myByteCount += theFile.size();
    }
    myOutput.event(
        u"filesUploaded"_s,
        {{u"path"_s, theFile.filePath()}, {u"size"_s, theFile.size()}, {u"stored"_s, isStored}});
}

void VXSampleUploadEvents::onUrlChanged(const QUrl& theUrl, const QString& theWifiName,
                                        int theIndex, int theCount)
{
    // The same address with another token: a phone has used the one before.
    const bool isRedeemed =
        theUrl.authority() == myUrl.authority() && theUrl.query() != myUrl.query();
    if (isRedeemed)
        myOutput.event(u"redeemed"_s, {});
    myUrl = theUrl;
    myOutput.event(u"urlChanged"_s, {{u"url"_s, theUrl.toString()},
                                     {u"wifiName"_s, theWifiName},
                                     {u"index"_s, theIndex},
                                     {u"count"_s, theCount}});
}
