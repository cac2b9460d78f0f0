#pragma once

#include <QtCore/QByteArray>
#include <QtCore/QString>
#include <QtCore/QUrl>

/// libcurl with one handle, hence one kept connection. Use it in one thread.
class VXCurlClient
{
    Q_DISABLE_COPY_MOVE(VXCurlClient)

public:
    enum class Interface
    {
        Easy,
        Multi
    };

    /// theAuthorityFile is a PEM file with the certificates to trust.
    VXCurlClient(Interface theInterface, const QString& theAuthorityFile);
    ~VXCurlClient();

    /// The body; empty when the transfer failed.
    QByteArray get(const QUrl& theUrl);

private:
    bool performMulti();

    const Interface myInterface;
    void* myEasy;
    void* myMulti;
};
