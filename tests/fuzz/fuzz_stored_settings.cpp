#include "VXFuzzTarget.h"

#include <VXNetworking/VXCredentials.h>
#include <VXNetworking/VXNetworkSettings.h>

#include <VXCore/VXConfigItemCodec.h>
#include <VXCore/VXCrypto.h>
#include <VXCore/VXDeploymentConfig.h>
#include <VXCore/VXEncoder.h>
#include <VXCore/VXSettings.h>

#include <QtCore/QDateTime>
#include <QtCore/QFile>

using namespace Qt::StringLiterals;

namespace {

/// Keys that the kept cases are enciphered with. The one for texts lies in a file, as the library
/// makes it.
bool setKeys()
{
    VXDeploymentConfig* const deployment = VXDeploymentConfig::instance();
    const QString path = VXFuzzTarget::folder() + u"/text.key"_s;
    QFile file(path);
    VXFuzzTarget::check(file.open(QFile::WriteOnly) && file.write(QByteArray(32, 'k')) == 32,
                        "room for a key");
    deployment->setValue(u"Crypto/keyFile"_s, path);
    deployment->setValue(u"Crypto/legacyDesKey"_s, u"0123456789abcdef"_s);
    deployment->setValue(u"Crypto/legacyEncoderKey"_s, u" "_s);
    return true;
}

void readCipher(const QString& theText)
{
    const VXCrypto crypto;
    const QString plain = crypto.decryptDES(theText);
    VXFuzzTarget::check(plain.isEmpty() || crypto.decryptDES(crypto.encryptDES(plain)) == plain,
                        "what was read can be written");
    const QString old = VXEncoder::decodeString(theText);
    VXFuzzTarget::check(old.isEmpty() || VXEncoder::encodeString(old) == theText,
                        "the old form has one spelling");
    VXFuzzTarget::saw("plain", plain.size());
    VXFuzzTarget::saw("old", old.size());
}

/// A password on its way into the settings and back.
void writeCipher(const QString& theText)
{
    const VXCrypto crypto;
    QString cipher = crypto.encryptDES(theText);
    VXFuzzTarget::check(crypto.decryptDES(cipher) == theText, "what was written can be read");
    constexpr qsizetype insideTag = 10;
    cipher[insideTag] = cipher.at(insideTag) == u'A' ? u'B' : u'A';
    VXFuzzTarget::check(crypto.decryptDES(cipher).isEmpty(), "what was changed cannot");
}

void readProxy(const QString& theText)
{
    using Codec = VXConfigItemCodec<QNetworkProxy>;
    const std::optional<QNetworkProxy> proxy = Codec::decode(theText);
    if (!proxy)
        return;
    VXFuzzTarget::saw("proxy", proxy->type());
    VXFuzzTarget::saw("proxy password", proxy->password().size());
    const std::optional<QNetworkProxy> again = Codec::decode(Codec::encode(*proxy));
    VXFuzzTarget::check(again && *again == *proxy, "a proxy comes back");
    VXFuzzTarget::planted(proxy->type() != QNetworkProxy::HttpProxy);
}

/// Writes a settings file as somebody may have edited it. Always the same one, since Qt keeps what
/// it has read of each; it reads again when the file's time is another one.
void writeStore(const QString& thePath, const QByteArray& theContent)
{
    static qint64 ourTime = 0; // seconds since the epoch
    QFile file(thePath);
    VXFuzzTarget::check(file.open(QFile::WriteOnly) && file.write(theContent) == theContent.size(),
                        "room for a file");
    file.flush();
    file.setFileTime(QDateTime::fromSecsSinceEpoch(++ourTime), QFile::FileModificationTime);
}

void readLogin()
{
    VXCredentials credentials;
    credentials.load(u"Login"_s);
    VXFuzzTarget::saw("login", credentials.isValid());
    VXFuzzTarget::saw("password", credentials.password().size());
    VXFuzzTarget::saw("refresh", credentials.refreshToken().size());
    credentials.save(u"Login"_s);
    VXCredentials again;
    again.load(u"Login"_s);
    VXFuzzTarget::check(again.username() == credentials.username(), "a name comes back");
}

void readStore(const QByteArray& theContent)
{
    const QString path = VXFuzzTarget::folder() + u"/settings.ini"_s;
    writeStore(path, theContent);
    VXSettings::setStoreFile(path);

    VXNetworkSettings& settings = *VXNetworkSettings::instance();
    settings.loadSettings();
    const int port = settings.proxyPort();
    VXFuzzTarget::check(port >= 0 && port <= 65535, "a port is a port");
    VXFuzzTarget::saw("type", settings.proxyType());
    VXFuzzTarget::saw("choice", settings.proxyChoice().value());
    VXFuzzTarget::saw("host", settings.proxyHostName().size());
    readLogin();
    VXSettings::setStoreFile(VXFuzzTarget::folder() + u"/none.ini"_s);
}

} // namespace

/// What stands in the settings file. The first byte says which reader gets the rest.
extern "C" int LLVMFuzzerTestOneInput(const uint8_t* theData, size_t theSize)
{
    VXFuzzTarget::prepare();
    static const bool ourIsReady = setKeys();
    if (!ourIsReady || theSize == 0)
        return 0;
    const QByteArray content = VXFuzzTarget::input(theData, theSize).sliced(1);
    switch (theData[0] % 5) {
    case 0:
        readStore(content);
        break;
    case 1:
        readProxy(QString::fromUtf8(content));
        break;
    case 4:
        writeCipher(QString::fromUtf8(content));
        break;
    default:
        readCipher(QString::fromUtf8(content));
    }
    return 0;
}
