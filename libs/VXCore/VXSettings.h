#pragma once

#include "VXCoreExport.h"

#include <QtCore/QObject>
#include <QtCore/QString>
#include <QtCore/QStringList>
#include <QtCore/QVariant>

/// A view on the application's settings store, and the base of classes that keep settings there.
///
/// All views share one store: an INI file, UTF-8, that only its owner may read
/// ("Paths/settingsFile" of the deployment). Each view has a stack of groups of its own, so views
/// of different threads cannot mix their groups. Who wants several calls to belong together holds
/// a VXSettingsLock meanwhile. The application's own view is
/// VXSingleton<VXSettings>::instance().
///
/// Calls with theIsMachineWide concern a second store that all users of the machine share, below
/// /etc/xdg; usually only its administrator may write there.
///
/// Thread-safe, apart from what subclasses add. A key is "name" or "group/name".
class VXCORE_EXPORT VXSettings : public QObject
{
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(VXSettings)

public:
    VXSettings();
    ~VXSettings() override;

    /// Opens a group inside the one that is open. Calls nest.
    void beginGroup(const QString& theName);

    /// Closes the innermost group. Without an open group it does nothing.
    void endGroup();

    /// The entry, or the default when there is none. Numbers come back as text; converting a text
    /// that is no number gives 0.
    [[nodiscard]] QVariant value(const QString& theKey, const QVariant& theDefault = {},
                                 bool theIsMachineWide = false) const;

    /// Writes an entry through to the file; under a VXSettingsLock when that ends. False when the
    /// store cannot be written or the key is empty.
    bool writeEntry(const QString& theKey, const QVariant& theValue, bool theIsMachineWide = false);

    /// Whether there is an entry of that name; a group is none.
    [[nodiscard]] bool doesEntryExist(const QString& theKey) const;

    /// Deletes the entry. Without one it does nothing.
    void deleteEntry(const QString& theKey);

    /// Reads what the subclass keeps. Does nothing here.
    virtual void loadSettings();

    /// Writes what the subclass keeps. Does nothing here.
    virtual void saveSettings();

    /// Adapts the settings to the way the program was started. Does nothing here.
    virtual void applyStartupRuleInternal(int theRule);

    /// Makes all views use another file, which is made when something is written.
    static void setStoreFile(const QString& theFile);

    /// The file of the store, absolute.
    [[nodiscard]] static QString storeFile();

private:
    [[nodiscard]] QString fullKey(const QString& theKey) const;

    QStringList myGroups; // guarded by the store's lock
};
