#pragma once

#include "VXCoreExport.h"
#include "VXSingleton.h"

#include <QtCore/QString>

/// The application's basic settings: where temporary files go, and the developer mode.
/// Thread-safe.
class VXCORE_EXPORT VXBasisSettings : public VXSingleton<VXBasisSettings>
{
    Q_DISABLE_COPY_MOVE(VXBasisSettings)

public:
    VXBasisSettings();
    ~VXBasisSettings() override;

    /// The folder for temporary files, absolute, without a slash at its end, the same in each run
    /// ("Paths/temporaryDirectory" of the deployment). It is made when it is missing, for its owner
    /// only. Empty, with a warning, when it cannot be made or belongs to somebody else.
    [[nodiscard]] QString temporaryDirectory() const;
    void setTemporaryDirectory(const QString& theFolder);

    /// Whether the program shows what only its developers need ("Program/masterMode").
    [[nodiscard]] bool runsInMasterMode() const;
    void setMasterMode(bool theIsOn);
};
