#pragma once

#include "VXCoreExport.h"
#include "VXSingleton.h"

#include <QtCore/QMutex>
#include <QtCore/QString>

/// The application's basic settings: where temporary files go, and the developer mode.
/// Thread-safe.
class VXCORE_EXPORT VXBasisSettings : public VXSingleton<VXBasisSettings>
{
    Q_DISABLE_COPY_MOVE(VXBasisSettings)

public:
    VXBasisSettings();
    ~VXBasisSettings() override;

    /// The folder for temporary files, absolute, without a slash at its end and without links in
    /// its path, the same in each run ("Paths/temporaryDirectory" of the deployment). It is made
    /// when it is missing, and closed to everybody but its owner, new or not. When it cannot be
    /// made, is a link, belongs to somebody else or lets others write, a folder that this process
    /// has for itself takes its place, with a warning. Never empty.
    [[nodiscard]] QString temporaryDirectory() const;

    /// Holds until the process ends. A relative path is taken from the current folder.
    void setTemporaryDirectory(const QString& theFolder);

    /// Whether the program shows what only its developers need ("Program/masterMode").
    [[nodiscard]] bool runsInMasterMode() const;

    /// Holds until the process ends. Dialogs ask when they are made: open ones stay as they are.
    void setMasterMode(bool theIsOn);

private:
    mutable QMutex myMutex;          // guards the two below
    mutable QString myPassingFolder; // empty until it is needed
    mutable QString myRefusedFolder; // the last one that was warned about
};
