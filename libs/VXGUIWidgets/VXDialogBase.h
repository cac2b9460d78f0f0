#pragma once

#include "VXGUIWidgetsExport.h"

#include <QtWidgets/QDialog>
#include <QtWidgets/QDialogButtonBox>

class QPushButton;
class QVBoxLayout;
struct VXDialogConfig;

/// A dialog with a content area and a row of standard buttons. OK accepts it; Cancel, Close and
/// Escape reject it.
///
/// Set up in two phases: the constructor of a subclass calls setupDialog() with the configuration
/// that it makes, often in an operation of its own, and then fills usableWidget().
/// GUI thread only.
class VXGUIWIDGETS_EXPORT VXDialogBase : public QDialog
{
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(VXDialogBase)

public:
    /// Named as in the button box, so that callers need not know of it.
    using StandardButton = QDialogButtonBox::StandardButton;

    /// Without buttons until setupDialog() brings some.
    explicit VXDialogBase(QWidget* theParent = nullptr);
    ~VXDialogBase() override;

    /// Gives the dialog its buttons; a second call replaces them.
    virtual void setupDialog(const VXDialogConfig& theConfig);

    /// Where the content goes: it has no layout yet. Owned by the dialog.
    [[nodiscard]] QWidget* usableWidget() const { return myUsableWidget; }

    /// Puts another text on the OK button; nothing happens when the dialog has none.
    void renameOkButton(const QString& theText);

    /// The same for the Cancel button.
    void renameCancelButton(const QString& theText);

    /// Shows or hides a button; nothing happens when the dialog has none such.
    void setButtonVisible(StandardButton theButton, bool theIsVisible);

    /// Sets a dynamic property of a button and applies the style sheet anew, which may look at it.
    /// Nothing happens when the dialog has no such button.
    void setPropertyToStandardButton(StandardButton theButton, const char* theName,
                                     const QVariant& theValue);

    /// Null when the dialog has no such button. Owned by the dialog.
    [[nodiscard]] QPushButton* standardButton(StandardButton theButton) const;

protected:
    /// Puts theWidget above the content area.
    void addAboveUsableWidget(QWidget* theWidget);

private:
    void rename(StandardButton theButton, const QString& theText);
    void labelButtons();

    QVBoxLayout* myLayout = nullptr; // children of this
    QWidget* myUsableWidget = nullptr;
    QDialogButtonBox* myButtons = nullptr;
};
