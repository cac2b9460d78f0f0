#pragma once

#include "VXCoreExport.h"
#include "VXSingleton.h"

#include <QtCore/QString>

class QWidget;

/// Asks the user where on the disk something goes. GUI thread only.
class VXCORE_EXPORT VXRequestDiskAccess : public VXSingleton<VXRequestDiskAccess>
{
    Q_DISABLE_COPY_MOVE(VXRequestDiskAccess)

public:
    VXRequestDiskAccess();
    ~VXRequestDiskAccess() override;

    /// Asks for a file to write to and returns its absolute path; empty when the user cancelled or
    /// the dialog vanished with theParent. An existing file is returned only after a second
    /// question.
    ///
    /// theMode is the application's number for what is saved, 3 for a document: each has its own
    /// last folder, which the settings store keeps. theFilter is one of QFileDialog, its first
    /// ending is added to a name that has none. theDefaultName may be any text, such as the title
    /// of a page: fileName() makes it the proposed name.
    [[nodiscard]] virtual QString getSaveFileName(int theMode, QWidget* theParent,
                                                  const QString& theCaption,
                                                  const QString& theFilter,
                                                  const QString& theDefaultName);

    /// theText as the name of a file: with "_" for what the file system or the dialog would
    /// misread (slashes, quotation marks, control characters, a leading dot or tilde), and no
    /// longer than a name may be; the ending stays.
    [[nodiscard]] static QString fileName(const QString& theText);
};
