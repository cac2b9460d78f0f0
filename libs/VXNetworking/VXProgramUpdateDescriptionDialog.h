#pragma once

#include "VXNetworkingExport.h"

#include <VXGUIWidgets/VXDialogBase.h>

#include <QtCore/QString>

struct VXDialogConfig;

/// Shows what is new in a newer version of the program and asks whether to update now: accepted
/// means now, rejected later. VXRequestNetwork::showProgramUpdateDialog() runs it.
/// GUI thread only.
class VXNETWORKING_EXPORT VXProgramUpdateDescriptionDialog : public VXDialogBase
{
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(VXProgramUpdateDescriptionDialog)

public:
    /// theDescription is HTML, which may be empty. With theIsMandatory there is no button for
    /// later, though the window can still be closed.
    VXProgramUpdateDescriptionDialog(QWidget* theParent, const QString& theDescription,
                                     bool theIsMandatory);
    ~VXProgramUpdateDescriptionDialog() override;

    /// OK and Cancel, OK being the default.
    [[nodiscard]] VXDialogConfig createConfig() const;

    /// A page that shows theHtml; theParent owns it.
    [[nodiscard]] QWidget* createUpdateDescription(QWidget* theParent, const QString& theHtml);

    /// A label of any number of lines, for subclasses; theParent owns it.
    [[nodiscard]] QWidget* createIntroLabel(QWidget* theParent, const QString& theText);

private:
    void createContent(const QString& theDescription);
    void labelButtons(bool theIsMandatory);
};
