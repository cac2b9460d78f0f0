#include "VXQWebEngineUrlSchemeHandler.h"

#include <QtCore/QDebug>
#include <QtCore/QFile>
#include <QtCore/QPointer>
#include <QtWebEngineCore/QWebEngineUrlRequestJob>

using namespace Qt::StringLiterals;

namespace {

bool isOfTheWeb(const QUrl& theInitiator)
{
    return theInitiator.scheme() == "http"_L1 || theInitiator.scheme() == "https"_L1;
}

void reply(QWebEngineUrlRequestJob* theJob, const QFileInfo& theFile, const QString& theType)
{
    auto* const file = new QFile(theFile.absoluteFilePath()); // goes with the job
    QObject::connect(theJob, &QObject::destroyed, file, &QObject::deleteLater);
    theJob->reply(theType.toUtf8(), file);
}

} // namespace

VXQWebEngineUrlSchemeHandler::VXQWebEngineUrlSchemeHandler(QObject* theParent)
    : QWebEngineUrlSchemeHandler(theParent)
{
}

VXQWebEngineUrlSchemeHandler::~VXQWebEngineUrlSchemeHandler() = default;

void VXQWebEngineUrlSchemeHandler::requestStarted(QWebEngineUrlRequestJob* theJob)
{
    const QUrl url = theJob->requestUrl();
    const QUrl initiator = theJob->initiator();
    const QPointer<QWebEngineUrlRequestJob> job(theJob);
    if (commandFilter(url) && isOfTheWeb(initiator))
        qWarning().noquote() << u"a page of %1 let an address be opened"_s.arg(
            initiator.toString(QUrl::RemoveUserInfo).left(256));

    if (!job) // what opens addresses may have run the event loop
        return;

    // A command is answered like everything else, hence usually as not found.
    const QFileInfo file = fileInfo(url.path(QUrl::FullyDecoded));
    if (file.exists())
        reply(theJob, file, contentType(file));
    else
        theJob->fail(QWebEngineUrlRequestJob::UrlNotFound);
}
