#pragma once

#include <QtCore/QByteArray>
#include <QtCore/QUrl>

/// A phone of few instructions, so that it leaves the processor to the server: blocking calls, one
/// kept connection, the same bytes for every photo.
class VXUploadPhone
{
    Q_DISABLE_COPY_MOVE(VXUploadPhone)

public:
    VXUploadPhone() = default;
    ~VXUploadPhone();

    /// Connects and redeems the token of theUrl; photos go to /upload?file=NAME, or, when its path
    /// is "/put", by PUT to /upload/NAME. False when nobody answers with status 200.
    bool introduceTo(const QUrl& theUrl);

    /// Sends one photo and waits for the answer. False unless that is status 200 or 201.
    bool send(const QByteArray& theName, const QByteArray& thePhoto);

private:
    bool write(const QByteArray& theBytes) const;
    bool readAnswer() const;

    int mySocket = -1;
    QByteArray myCookie;
    bool myPuts = false;
};
