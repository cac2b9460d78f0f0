#include "VXCrypto.h"

#include "VXCryptoKey.h"
#include "VXDeploymentConfig.h"

#include <QtCore/QDebug>
#include <QtCore/QStringDecoder>

#include <array>
#include <memory>
#include <openssl/core_names.h>
#include <openssl/crypto.h>
#include <openssl/err.h>
#include <openssl/evp.h>
#include <openssl/kdf.h>
#include <openssl/params.h>
#include <optional>
#include <string>
#include <string_view>

using namespace Qt::StringLiterals;

namespace {

constexpr auto prefix = "$2$"_L1; // no base64 text begins so: the old form cannot be mistaken
constexpr char marker = 0x01;     // first byte of what is enciphered, which thus is never empty
constexpr std::string_view keyPurpose = "VXCrypto AES-256-SIV 2";
constexpr std::string_view textPurpose = "VXCrypto text";
constexpr int tagSize = 16;
constexpr qsizetype sivKeySize = 64;
constexpr qsizetype desKeySize = 8;
constexpr qsizetype desBlockSize = 8;

template <auto Free>
struct Freer
{
    template <typename T>
    void operator()(T* theObject) const
    {
        Free(theObject);
    }
};

using Context = std::unique_ptr<EVP_CIPHER_CTX, Freer<EVP_CIPHER_CTX_free>>;
using Cipher = std::unique_ptr<EVP_CIPHER, Freer<EVP_CIPHER_free>>;
using Kdf = std::unique_ptr<EVP_KDF, Freer<EVP_KDF_free>>;
using KdfContext = std::unique_ptr<EVP_KDF_CTX, Freer<EVP_KDF_CTX_free>>;

// Bytes that nobody finds in the memory afterwards. Never copied, so there is nothing else to wipe.
class Secret
{
    Q_DISABLE_COPY(Secret)

public:
    explicit Secret(qsizetype theSize)
        : myBytes(theSize, '\0')
    {
    }
    explicit Secret(const QByteArray& theBytes)
        : myBytes(theBytes.constData(), theBytes.size())
    {
    }
    Secret(Secret&&) = default;
    ~Secret() { OPENSSL_cleanse(myBytes.data(), static_cast<size_t>(myBytes.size())); }

    [[nodiscard]] unsigned char* data() { return reinterpret_cast<unsigned char*>(myBytes.data()); }
    [[nodiscard]] QByteArrayView view() const { return myBytes; }
    [[nodiscard]] int size() const { return static_cast<int>(myBytes.size()); }

private:
    QByteArray myBytes;
};

// TLS code of this thread takes what lies in the error queue for its own; we leave nothing there.
class ErrorMark
{
    Q_DISABLE_COPY_MOVE(ErrorMark)

public:
    ErrorMark() { ERR_set_mark(); }
    ~ErrorMark() { ERR_pop_to_mark(); }
};

const unsigned char* bytes(QByteArrayView theBytes)
{
    return reinterpret_cast<const unsigned char*>(theBytes.data());
}

const unsigned char* bytes(std::string_view theText)
{
    return reinterpret_cast<const unsigned char*>(theText.data());
}

// RFC 5869 with SHA-512.
bool deriveKey(Secret& theMaster, Secret& theKey)
{
    const Kdf kdf(EVP_KDF_fetch(nullptr, "HKDF", nullptr));
    const KdfContext context(EVP_KDF_CTX_new(kdf.get()));
    if (!context)
        return false;
    std::string digest = "SHA512";
    std::string info(keyPurpose);
    const std::array parameters{
        OSSL_PARAM_construct_utf8_string(OSSL_KDF_PARAM_DIGEST, digest.data(), digest.size()),
        OSSL_PARAM_construct_octet_string(OSSL_KDF_PARAM_KEY, theMaster.data(),
                                          static_cast<size_t>(theMaster.size())),
        OSSL_PARAM_construct_octet_string(OSSL_KDF_PARAM_INFO, info.data(), info.size()),
        OSSL_PARAM_construct_end(),
    };
    return EVP_KDF_derive(context.get(), theKey.data(), static_cast<size_t>(theKey.size()),
                          parameters.data()) == 1;
}

// A context with the key and the associated data set; null on failure.
Context sivContext(Secret& theMaster, bool theIsEncrypting, QByteArrayView theTag = {})
{
    Secret key(sivKeySize);
    const Cipher cipher(EVP_CIPHER_fetch(nullptr, "AES-256-SIV", nullptr));
    Context context(EVP_CIPHER_CTX_new());
    if (!cipher || !context || !deriveKey(theMaster, key))
        return nullptr;
    if (EVP_CipherInit_ex2(context.get(), cipher.get(), key.data(), nullptr, theIsEncrypting,
                           nullptr) != 1)
        return nullptr;
    if (!theIsEncrypting && EVP_CIPHER_CTX_ctrl(context.get(), EVP_CTRL_AEAD_SET_TAG, tagSize,
                                                const_cast<char*>(theTag.data())) != 1)
        return nullptr;
    int length = 0;
    const bool isReady = EVP_CipherUpdate(context.get(), nullptr, &length, bytes(textPurpose),
                                          static_cast<int>(textPurpose.size())) == 1;
    return isReady ? std::move(context) : nullptr;
}

// Tag and enciphered text; empty on failure.
QByteArray seal(Secret& theMaster, Secret& thePlain)
{
    const Context context = sivContext(theMaster, true);
    QByteArray result(tagSize + thePlain.size(), '\0');
    auto* const out = reinterpret_cast<unsigned char*>(result.data());
    int length = 0;
    const bool isDone =
        context &&
        EVP_EncryptUpdate(context.get(), out + tagSize, &length, thePlain.data(),
                          thePlain.size()) == 1 &&
        EVP_EncryptFinal_ex(context.get(), out + tagSize + length, &length) == 1 &&
        EVP_CIPHER_CTX_ctrl(context.get(), EVP_CTRL_AEAD_GET_TAG, tagSize, out) == 1;
    return isDone ? result : QByteArray();
}

// The plain bytes, when the tag fits them.
std::optional<Secret> unseal(Secret& theMaster, QByteArrayView theSealed)
{
    if (theSealed.size() <= tagSize)
        return std::nullopt;
    const QByteArrayView text = theSealed.sliced(tagSize);
    const Context context = sivContext(theMaster, false, theSealed.first(tagSize));
    Secret plain(text.size());
    int length = 0;
    const bool isDone = context &&
                        EVP_DecryptUpdate(context.get(), plain.data(), &length, bytes(text),
                                          static_cast<int>(text.size())) == 1 &&
                        length == plain.size();
    return isDone ? std::make_optional(std::move(plain)) : std::nullopt;
}

// The marker and the UTF-16 units, the low byte first: every QString comes back as it was.
Secret packed(const QString& theText)
{
    Secret result(1 + 2 * theText.size());
    unsigned char* out = result.data();
    *out++ = marker;
    for (const QChar unit : theText) {
        *out++ = unit.cell();
        *out++ = unit.row();
    }
    return result;
}

QString unpacked(QByteArrayView theBytes)
{
    if (theBytes.size() % 2 == 0 || theBytes.front() != marker)
        return {};
    QString text(theBytes.size() / 2, Qt::Uninitialized);
    const unsigned char* in = bytes(theBytes) + 1;
    for (QChar& unit : text) {
        unit = QChar(in[0], in[1]);
        in += 2;
    }
    return text;
}

// DES-CBC with a zero vector. Three times the same key makes triple DES the single one, which
// OpenSSL no longer offers.
QString decryptOldForm(const QByteArray& theCipher, Secret& theDesKey)
{
    if (theDesKey.size() != desKeySize || theCipher.isEmpty() ||
        theCipher.size() % desBlockSize != 0)
        return {};
    const QByteArrayView key = theDesKey.view();
    Secret tripled(key.toByteArray().repeated(3));
    const std::array<unsigned char, desBlockSize> vector{};
    const Cipher cipher(EVP_CIPHER_fetch(nullptr, "DES-EDE3-CBC", nullptr));
    const Context context(EVP_CIPHER_CTX_new());
    Secret plain(theCipher.size() + desBlockSize);
    int length = 0;
    int rest = 0;
    const bool isDone = cipher && context &&
                        EVP_DecryptInit_ex2(context.get(), cipher.get(), tripled.data(),
                                            vector.data(), nullptr) == 1 &&
                        EVP_DecryptUpdate(context.get(), plain.data(), &length, bytes(theCipher),
                                          static_cast<int>(theCipher.size())) == 1 &&
                        EVP_DecryptFinal_ex(context.get(), plain.data() + length, &rest) == 1;
    if (!isDone)
        return {};
    QStringDecoder decoder(QStringDecoder::Utf8, QStringDecoder::Flag::Stateless);
    const QString text = decoder.decode(plain.view().first(length + rest));
    return decoder.hasError() ? QString() : text;
}

std::optional<QByteArray> decoded(const QByteArray& theText, QByteArray::Base64Options theOptions)
{
    const auto result = QByteArray::fromBase64Encoding(
        theText, theOptions | QByteArray::AbortOnBase64DecodingErrors);
    return result ? std::optional(*result) : std::nullopt;
}

Secret legacyKey()
{
    const QString digits = VXDeploymentConfig::instance()->text(u"Crypto/legacyDesKey"_s);
    return Secret(QByteArray::fromHex(digits.toLatin1()));
}

Secret masterKey(const QByteArray& theOwnKey)
{
    if (!theOwnKey.isEmpty())
        return Secret(theOwnKey);
    QByteArray key = VXCryptoKey::fetch(VXDeploymentConfig::instance()->text(u"Crypto/keyFile"_s));
    Secret secret(key);
    OPENSSL_cleanse(key.data(), static_cast<size_t>(key.size()));
    return secret;
}

} // namespace

VXCrypto::VXCrypto() = default;

void VXCrypto::setKey(const QByteArray& theKey)
{
    if (theKey.size() == VXCryptoKey::size)
        myKey = theKey;
    else
        qWarning("VXCrypto: a key has 32 bytes");
}

QString VXCrypto::encryptDES(const QString& theText) const
{
    const ErrorMark mark;
    Secret master = masterKey(myKey);
    Secret plain = packed(theText);
    const QByteArray sealed = seal(master, plain);
    if (sealed.isEmpty()) {
        qWarning("VXCrypto: AES-256-SIV is not available");
        return {};
    }
    return prefix + QString::fromLatin1(sealed.toBase64(QByteArray::Base64UrlEncoding |
                                                        QByteArray::OmitTrailingEquals));
}

QString VXCrypto::decryptDES(const QString& theCipher) const
{
    if (theCipher.isEmpty())
        return {};
    const ErrorMark mark;
    if (!theCipher.startsWith(prefix)) {
        const auto old = decoded(theCipher.toUtf8(), QByteArray::Base64Encoding);
        Secret key = legacyKey();
        return old ? decryptOldForm(*old, key) : QString();
    }
    const auto sealed =
        decoded(theCipher.sliced(prefix.size()).toUtf8(), QByteArray::Base64UrlEncoding);
    if (!sealed)
        return {};
    Secret master = masterKey(myKey);
    const std::optional<Secret> plain = unseal(master, *sealed);
    return plain ? unpacked(plain->view()) : QString();
}
