#include "VXFuzzTarget.h"

#include <VXNetworking/VXCredentials.h>
#include <VXNetworking/VXNetworkSettings.h>

#include <VXCore/VXConfigItemCodec.h>
#include <VXCore/VXCrypto.h>
#include <VXCore/VXEncoder.h>
#include <VXCore/VXSettings.h>

#include <QtCore/QFile>

using namespace Qt::StringLiterals;

namespace {

void readCipher(const QString& theText)
{
    const VXCrypto crypto;
    const QString plain = crypto.decryptDES(theText);
    VXFuzzTarget::check(plain.isEmpty() || crypto.decryptDES(crypto.encryptDES(plain)) == plain,
                        "what was read can be written");
    const QString old = VXEncoder::decodeString(theText);
    VXFuzzTarget::check(old.isEmpty() || VXEncoder::encodeString(old) == theText,
                        "the old form has one spelling");
    VXFuzzTarget::planted(old.size() > 4);
}

void readProxy(const QString& theText)
{
    using Codec = VXConfigItemCodec<QNetworkProxy>;
    const std::optional<QNetworkProxy> proxy = Codec::decode(theText);
    if (!proxy)
        return;
    const std::optional<QNetworkProxy> again = Codec::decode(Codec::encode(*proxy));
    VXFuzzTarget::check(again && *again == *proxy, "a proxy comes back");
}

/// A whole store, as somebody may have edited it. A file of its own each time: Qt remembers those
/// that it has read.
void readStore(const QByteArray& theContent)
{
    static int ourNumber = 0;
    const QString path = VXFuzzTarget::folder() + u"/settings%1.ini"_s.arg(++ourNumber);
    QFile file(path);
    VXFuzzTarget::check(file.open(QFile::WriteOnly) && file.write(theContent) == theContent.size(),
                        "room for a file");
    file.close();
    VXSettings::setStoreFile(path);

    VXNetworkSettings::instance()->loadSettings();
    const int port = VXNetworkSettings::instance()->proxyPort();
    VXFuzzTarget::check(port >= 0 && port <= 65535, "a port is a port");
    VXCredentials credentials;
    credentials.load(u"Login"_s);
    std::ignore = credentials.isValid();
    credentials.save(u"Login"_s);
    VXCredentials again;
    again.load(u"Login"_s);
    VXFuzzTarget::check(again.username() == credentials.username(), "a name comes back");
    VXSettings::setStoreFile(VXFuzzTarget::folder() + u"/none.ini"_s);
    file.remove();
}

} // namespace

/// What stands in the settings file. The first byte says which reader gets the rest.
extern "C" int LLVMFuzzerTestOneInput(const uint8_t* theData, size_t theSize)
{
    VXFuzzTarget::prepare();
    if (theSize == 0)
        return 0;
    const QByteArray content = VXFuzzTarget::input(theData, theSize).sliced(1);
    switch (theData[0] % 4) {
    case 0:
        readStore(content);
        break;
    case 1:
        readProxy(QString::fromUtf8(content));
        break;
    default:
        readCipher(QString::fromUtf8(content));
    }
    return 0;
}
