#pragma once

#include "VXGUIWidgetsExport.h"

#include <QtWidgets/QGroupBox>

/// One page of the application's preferences dialog. The dialog calls readFromConfig() before it
/// shows the page, checkLeaveCondition() before it leaves it, and writeToConfig() when the user
/// confirms. GUI thread only.
class VXGUIWIDGETS_EXPORT VXPreferencesBox : public QGroupBox
{
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(VXPreferencesBox)

public:
    /// theTitle is the heading of the page.
    explicit VXPreferencesBox(const QString& theTitle, QWidget* theParent = nullptr);
    ~VXPreferencesBox() override;

    /// Fills the controls from the stored preferences; does nothing here.
    virtual void readFromConfig();

    /// Stores what the controls say; does nothing here.
    virtual void writeToConfig();

    /// Whether the page may be left as it is filled in; always true here.
    [[nodiscard]] virtual bool checkLeaveCondition();
};
