#pragma once

#include "VXDialogBase.h"

class QLabel;

/// A dialog with a headline above its main area. GUI thread only.
class VXGUIWIDGETS_EXPORT VXDialog : public VXDialogBase
{
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(VXDialog)

public:
    /// Without a headline until setupDialog() brings one.
    explicit VXDialog(QWidget* theParent = nullptr);
    ~VXDialog() override;

    /// Takes the headline over as well.
    void setupDialog(const VXDialogConfig& theConfig) override;

    /// Where the content goes: it has no layout yet. Owned by the dialog.
    [[nodiscard]] QWidget* mainArea() const { return usableWidget(); }

private:
    QLabel* myHeadline = nullptr; // child of this
};
