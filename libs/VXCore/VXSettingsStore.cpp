#include "VXSettingsStore.h"

#include "VXDeploymentConfig.h"

#include <QtCore/QDataStream>
#include <QtCore/QDebug>
#include <QtCore/QDir>
#include <QtCore/QFile>
#include <QtCore/QFileInfo>
#include <QtCore/QStandardPaths>
#include <QtCore/QTemporaryFile>

#include <fcntl.h>

using namespace Qt::StringLiterals;

namespace {

constexpr QFile::Permissions ownerOnly = QFile::ReadOwner | QFile::WriteOwner;

// The file holds passwords, if enciphered, so it is never readable by others, not even between
// its making and a later change of mode. Later writes keep the mode.
bool prepare(const QString& theFile)
{
    const QFileInfo info(theFile);
    if (info.isFile())
        return info.isWritable();
    if (!QDir().mkpath(info.absolutePath()))
        return false;
    QFile file(theFile);
    return file.open(QFile::WriteOnly | QFile::NewOnly, ownerOnly);
}

/// At most that many bytes does the entry take in the file, with every character escaped.
qint64 largestSize(const QString& theKey, const QVariant& theValue)
{
    QByteArray bytes;
    QDataStream stream(&bytes, QDataStream::WriteOnly);
    stream << theKey << theValue;
    return 4 * bytes.size();
}

/// Whether the new file has room beside the old one. On a full disk QSettings replaces the file by
/// an empty one and reports success, so nobody may get that far.
bool hasRoom(const QString& theFile, qint64 theAddedBytes)
{
    constexpr qint64 lockFile = 4096;
    QTemporaryFile room(theFile + ".XXXXXX"_L1); // vanishes here, or with the process
    if (!room.open())
        return true; // the write itself will tell
    const qint64 size = QFileInfo(theFile).size() + theAddedBytes + lockFile;
    const int error = posix_fallocate(room.handle(), 0, size);
    if (error == 0)
        return true;
    qWarning().noquote() << theFile + ": no room for the settings: "_L1 + qt_error_string(error);
    return false;
}

void warnThatUnwritable(const QString& theFile)
{
    qWarning().noquote() << theFile + ": the settings cannot be written"_L1;
}

bool sync(std::unique_ptr<QSettings>& theSettings)
{
    if (!theSettings)
        return true;
    theSettings->sync();
    if (theSettings->status() != QSettings::AccessError)
        return true;
    warnThatUnwritable(theSettings->fileName());
    // It would report this failure for ever. The next one takes the unwritten changes over: Qt
    // keeps them by the file's name.
    theSettings.reset();
    return false;
}

} // namespace

VXSettingsStore& VXSettingsStore::instance()
{
    static auto* const ourStore = new VXSettingsStore; // never destroyed, see the header
    return *ourStore;
}

void VXSettingsStore::lock()
{
    myMutex.lock();
    ++myDepth;
}

void VXSettingsStore::unlock()
{
    if (isOutermost())
        flush();
    --myDepth;
    myMutex.unlock();
}

bool VXSettingsStore::flush()
{
    if (!myIsChanged)
        return true;
    myIsChanged = false;
    myPendingSize = 0;
    const bool isUserWritten = sync(myUser);
    return sync(myMachine) && isUserWritten;
}

QString VXSettingsStore::userFile()
{
    return VXDeploymentConfig::instance()->text(u"Paths/settingsFile"_s);
}

QString VXSettingsStore::machineFile()
{
    // The first folder is the user's own, the others are the machine's.
    const QStringList folders =
        QStandardPaths::standardLocations(QStandardPaths::AppConfigLocation);
    return folders.value(1, u"/etc/xdg"_s) + "/settings.ini"_L1;
}

QSettings& VXSettingsStore::user()
{
    if (!myUser) {
        myUser = std::make_unique<QSettings>(userFile(), QSettings::IniFormat);
        if (myUser->status() == QSettings::FormatError)
            qWarning().noquote() << userFile() + ": a line is neither a section nor a value"_L1;
    }
    return *myUser;
}

QSettings& VXSettingsStore::machine()
{
    if (!myMachine)
        myMachine = std::make_unique<QSettings>(machineFile(), QSettings::IniFormat);
    return *myMachine;
}

QVariant VXSettingsStore::value(const QString& theKey, const QVariant& theDefault,
                                bool theIsMachineWide)
{
    return (theIsMachineWide ? machine() : user()).value(theKey, theDefault);
}

bool VXSettingsStore::write(const QString& theKey, const QVariant& theValue, bool theIsMachineWide)
{
    if (!theIsMachineWide && !prepare(userFile())) {
        warnThatUnwritable(userFile());
        return false;
    }
    QSettings& settings = theIsMachineWide ? machine() : user();
    const qint64 added = myPendingSize + largestSize(theKey, theValue);
    if (!settings.isWritable() || !hasRoom(settings.fileName(), added))
        return false;
    settings.setValue(theKey, theValue);
    myIsChanged = true;
    myPendingSize = added;
    return true;
}

bool VXSettingsStore::contains(const QString& theKey)
{
    return user().contains(theKey);
}

void VXSettingsStore::remove(const QString& theKey)
{
    if (!hasRoom(user().fileName(), myPendingSize))
        return;
    user().remove(theKey);
    myIsChanged = true;
}

void VXSettingsStore::close()
{
    flush();
    myUser.reset();
    myMachine.reset();
}
