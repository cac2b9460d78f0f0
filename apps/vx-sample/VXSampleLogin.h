#pragma once

#include <QtCore/QString>
#include <QtCore/QUrl>

class QCommandLineParser;
struct VXSampleContext;

/// The provider and the account that the login commands talk about. Passwords come from standard
/// input only.
struct VXSampleLogin
{
    QUrl tokenUrl;
    QUrl authorizeUrl;
    QUrl revokeUrl;
    QString clientId;
    QString scope; ///< may be empty
    QString user;
    QString password;

    /// Declares the options.
    static void addOptions(QCommandLineParser& theParser);

    /// Reads the options and, when asked for, the password. A path as address means the simulator,
    /// which is started for it. False, and the user is told, when that is not there.
    bool read(const QCommandLineParser& theArguments, const VXSampleContext& theContext);

    /// Whether a login in the browser can be caught: the library's dialog does not tell that it
    /// cannot listen.
    [[nodiscard]] static bool isRedirectPortFree();

    /// What is unusable about the named address, empty when nothing is.
    [[nodiscard]] static QString complaintAbout(const QString& theOption, const QUrl& theUrl);
};
