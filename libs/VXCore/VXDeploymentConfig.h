#pragma once

#include "VXCoreExport.h"
#include "VXSingleton.h"

#include <QtCore/QHash>
#include <QtCore/QList>
#include <QtCore/QMutex>
#include <QtCore/QString>
#include <QtCore/QStringList>
#include <QtCore/QUrl>

/// What the deployment of the application decides: hosts, assets, paths, answers of the platform.
/// The only reader of deployment files; the program never writes them.
///
/// Values come from layers, the later wins key by key: built-in values; the first
/// "VXNetworking/deployment.ini" of the configuration folders, else "deployment.ini" of the
/// installed data folder; the file that the variable VX_DEPLOYMENT_CONFIG names; the files given
/// to readFile(); setValue(). The files are INI, UTF-8; a text that holds a comma stands in
/// quotation marks. An unknown key or an unusable value is left out with one warning that names
/// file and key.
///
/// Thread-safe.
class VXCORE_EXPORT VXDeploymentConfig : public VXSingleton<VXDeploymentConfig>
{
    Q_DISABLE_COPY_MOVE(VXDeploymentConfig)

public:
    /// A key with the value in force, as one text, and where that comes from: a file, "built-in"
    /// or "setter". Secret values read "***".
    struct Entry
    {
        QString key;    ///< "Section/name"
        QString value;  ///< items of a list are separated by ", "
        QString origin; ///< where the value comes from
    };

    /// Reads the standard files, see above.
    VXDeploymentConfig();
    ~VXDeploymentConfig() override;

    /// Reads one more file over what is known. False, with a warning, when it cannot be read.
    bool readFile(const QString& theFile);

    /// The strongest layer. A relative path is taken from the current folder. False, with a
    /// warning, when the key is unknown or the value does not fit it.
    bool setValue(const QString& theKey, const QString& theValue);

    /// The same for a key that holds a list.
    bool setList(const QString& theKey, const QStringList& theItems);

    /// The value of a key; empty when the key is unknown. Paths and folders are absolute.
    [[nodiscard]] QString text(const QString& theKey) const;

    /// The same as a number; 0 when the key is unknown or its value is none.
    [[nodiscard]] int number(const QString& theKey) const;

    /// True for "1" and for "true" in any case; false for all else, an unknown key too.
    [[nodiscard]] bool isEnabled(const QString& theKey) const;

    /// Read strictly; empty when the key is unknown or has no value.
    [[nodiscard]] QUrl url(const QString& theKey) const;

    /// The items in their order without the empty ones; an unknown key has none.
    [[nodiscard]] QStringList list(const QString& theKey) const;

    /// Every key with its value in force, sorted by key.
    [[nodiscard]] QList<Entry> entries() const;

    /// The folder of assets and translations beside the installed library, without a slash at
    /// its end; empty when there is none.
    [[nodiscard]] static QString dataFolder();

private:
    struct Value
    {
        QStringList parts;
        QString origin;
    };

    void readStandardFiles();
    bool store(const QString& theKey, const QStringList& theParts, const QString& theBase,
               const QString& theOrigin);
    [[nodiscard]] QStringList parts(const QString& theKey) const;

    mutable QMutex myMutex;
    // Guarded by myMutex. Keys without an entry have built-in values that depend on the machine.
    QHash<QString, Value> myValues;
};
