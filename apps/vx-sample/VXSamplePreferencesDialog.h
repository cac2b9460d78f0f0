#pragma once

#include <VXGUIWidgets/VXDialogBase.h>

class VXPreferencesBox;

/// The preferences dialog with the network page. OK stores the pages, unless one of them does not
/// want to be left; Cancel changes nothing.
class VXSamplePreferencesDialog : public VXDialogBase
{
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(VXSamplePreferencesDialog)

public:
    explicit VXSamplePreferencesDialog(QWidget* theParent = nullptr);
    ~VXSamplePreferencesDialog() override;

    void accept() override;

private:
    void addPage(VXPreferencesBox* thePage);

    QList<VXPreferencesBox*> myPages; // children of this
};
