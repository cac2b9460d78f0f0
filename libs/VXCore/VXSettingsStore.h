#pragma once

#include <QtCore/QRecursiveMutex>
#include <QtCore/QSettings>
#include <QtCore/QString>
#include <QtCore/QVariant>

#include <memory>

/// The files behind all VXSettings of the process. Not exported: VXSettings is the way to it.
///
/// Everything but lock() is called by the thread that holds the lock.
class VXSettingsStore
{
    Q_DISABLE_COPY_MOVE(VXSettingsStore)

public:
    /// The one store. Never destroyed, so static objects may still use it.
    [[nodiscard]] static VXSettingsStore& instance();

    /// Waits until no other thread holds the lock. The thread that holds it may lock again; each
    /// call needs its unlock().
    void lock();

    /// Writes the changes to the file when this is the outermost lock.
    void unlock();

    /// Writes the changes to the files. False, with a warning, when that failed.
    bool flush();

    /// Reads from the user's file or, machine-wide, from the machine's; theDefault when there is no
    /// such entry.
    [[nodiscard]] QVariant value(const QString& theKey, const QVariant& theDefault,
                                 bool theIsMachineWide);

    /// False when the file can't be written or the disk has no room for it.
    bool write(const QString& theKey, const QVariant& theValue, bool theIsMachineWide);

    /// Looks into the user's file only.
    [[nodiscard]] bool contains(const QString& theKey);

    /// Does nothing, with a warning, when the disk has no room for the new file.
    void remove(const QString& theKey);

    /// Forgets the open files; the next access opens those that are configured then.
    void close();

    /// Whether the outermost lock is the only one.
    [[nodiscard]] bool isOutermost() const { return myDepth == 1; }

    /// "Paths/settingsFile" of the deployment, absolute.
    [[nodiscard]] static QString userFile();

    /// "settings.ini" in the machine's first configuration folder, usually below /etc/xdg;
    /// absolute.
    [[nodiscard]] static QString machineFile();

private:
    VXSettingsStore() = default;

    QSettings& user();
    QSettings& machine();

    QRecursiveMutex myMutex;
    int myDepth = 0;
    bool myIsChanged = false;
    qint64 myPendingSize = 0;          // bytes; what the changes since the last flush add at most
    std::unique_ptr<QSettings> myUser; // null until used
    std::unique_ptr<QSettings> myMachine; // null until used
};
