#pragma once

#include "VXCoreExport.h"
#include "VXSingleton.h"

#include <QtCore/QHash>
#include <QtCore/QMutex>
#include <QtCore/QString>

/// Texts that differ from one retail partner to the other. Thread-safe.
class VXCORE_EXPORT VXKeyAccountTexts : public VXSingleton<VXKeyAccountTexts>
{
    Q_DISABLE_COPY_MOVE(VXKeyAccountTexts)

public:
    VXKeyAccountTexts();
    ~VXKeyAccountTexts() override;

    /// The text of that number; empty when there is none. Number 1 is the name that the
    /// application has for its user ("KeyAccount/text1" of the deployment).
    [[nodiscard]] QString text(int theNumber) const;

    /// Replaces a text; wins over the deployment.
    void setText(int theNumber, const QString& theText);

private:
    mutable QMutex myMutex;
    QHash<int, QString> myTexts; // guarded by myMutex
};
