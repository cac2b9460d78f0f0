#pragma once

#include "VXCoreExport.h"
#include "VXSingleton.h"

#include <QtCore/QString>

/// The retail partner that the application is sold by ("KeyAccount/..." of the deployment).
/// Thread-safe.
class VXCORE_EXPORT VXKeyAccount : public VXSingleton<VXKeyAccount>
{
    Q_DISABLE_COPY_MOVE(VXKeyAccount)

public:
    VXKeyAccount();
    ~VXKeyAccount() override;

    /// True when there is no particular partner.
    [[nodiscard]] bool isGeneric() const;

    /// Holds until the process ends; stronger than the deployment's files.
    void setGeneric(bool theIsGeneric);

    /// The partner's name; may be empty.
    [[nodiscard]] QString name() const;

    /// The file of the partner's picture, for the host; may be empty.
    [[nodiscard]] QString logoFile() const;
};
