#include "VXCryptoKey.h"

#include <QtCore/QDebug>
#include <QtCore/QDir>
#include <QtCore/QFile>
#include <QtCore/QFileInfo>
#include <QtCore/QLockFile>
#include <QtCore/QMutex>
#include <QtCore/QSaveFile>

#include <chrono>
#include <openssl/rand.h>

using namespace Qt::StringLiterals;

namespace {

constexpr QFile::Permissions ownerOnly = QFile::ReadOwner | QFile::WriteOwner;

QByteArray randomKey()
{
    QByteArray key(VXCryptoKey::size, Qt::Uninitialized);
    if (RAND_priv_bytes(reinterpret_cast<unsigned char*>(key.data()),
                        static_cast<int>(key.size())) != 1)
        qFatal("no random numbers");
    return key;
}

// Empty when the file does not hold a whole key.
QByteArray read(const QString& theFile)
{
    QFile file(theFile);
    if (!file.open(QFile::ReadOnly))
        return {};
    const QByteArray key = file.read(VXCryptoKey::size + 1);
    return key.size() == VXCryptoKey::size ? key : QByteArray();
}

// Others must not read the key, whatever put the file there.
void closeToOthers(const QString& theFile)
{
    constexpr QFile::Permissions others = QFile::ReadGroup | QFile::WriteGroup | QFile::ExeGroup |
                                          QFile::ReadOther | QFile::WriteOther | QFile::ExeOther;
    if (QFile::permissions(theFile) & others)
        QFile::setPermissions(theFile, ownerOnly);
}

bool write(const QString& theFile)
{
    QSaveFile file(theFile);
    if (!file.open(QFile::WriteOnly) || !file.setPermissions(ownerOnly))
        return false;
    // On a full disk the flush fails; a commit alone would leave an empty file.
    return file.write(randomKey()) == VXCryptoKey::size && file.flush() && file.commit();
}

// A file of another content is of no use, but it is somebody's: it is put aside, not overwritten.
bool make(const QString& theFile)
{
    if (!QDir().mkpath(QFileInfo(theFile).absolutePath()))
        return false;
    QLockFile lock(theFile + ".lock"_L1); // another process may be making it too
    if (!lock.tryLock(std::chrono::milliseconds(5000).count()))
        return false;
    if (!read(theFile).isEmpty())
        return true;
    const QFileInfo former(theFile);
    if (former.isFile() && !former.isReadable())
        return false;
    if (former.exists() && !QFile::rename(theFile, theFile + ".unusable"_L1))
        return false;
    return write(theFile);
}

QByteArray keyOfThisProcess(const QString& theFile)
{
    static const QByteArray ourKey = [&theFile] {
        qWarning().noquote()
            << theFile + ": no place for a key; stored passwords will not be readable later"_L1;
        return randomKey();
    }();
    return ourKey;
}

} // namespace

QByteArray VXCryptoKey::fetch(const QString& theFile)
{
    static QMutex ourMutex; // one maker at a time
    QByteArray key;
    {
        const QMutexLocker locker(&ourMutex);
        key = read(theFile);
        if (key.isEmpty() && make(theFile))
            key = read(theFile);
    }
    if (key.isEmpty())
        return keyOfThisProcess(theFile);
    closeToOthers(theFile);
    return key;
}
