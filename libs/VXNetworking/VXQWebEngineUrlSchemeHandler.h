#pragma once

#include "VXNetworkingExport.h"
#include "VXUrlSchemeHandler.h"

#include <QtWebEngineCore/QWebEngineUrlSchemeHandler>

class QWebEngineUrlRequestJob;

/// Answers the requests of the scheme "tov" in the web engine: commands are carried out, files
/// are delivered whole. VXWebEngineSettings installs the one that the application uses.
/// GUI thread.
class VXNETWORKING_EXPORT VXQWebEngineUrlSchemeHandler
    : public QWebEngineUrlSchemeHandler
    , public VXUrlSchemeHandler
{
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(VXQWebEngineUrlSchemeHandler)

public:
    /// Answers nothing before it is installed in a profile, which does not own it.
    explicit VXQWebEngineUrlSchemeHandler(QObject* theParent = nullptr);
    ~VXQWebEngineUrlSchemeHandler() override;

    /// Replies with the file, or fails the job with UrlNotFound, commands as well. A command of an
    /// http or https page is carried out like any other, with one warning in the log.
    void requestStarted(QWebEngineUrlRequestJob* theJob) override;
};
