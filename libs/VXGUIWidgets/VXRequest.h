#pragma once

#include "VXDialogDriver.h"
#include "VXGUIWidgetsExport.h"

#include <QtCore/QObject>
#include <QtCore/QString>
#include <QtWidgets/QMessageBox>

#include <optional>

class VXMessageBox;

/// The standard dialogs of the application. Each blocks until it is answered, belongs to the given
/// parent or else to the active window, and survives the destruction of that parent. Every dialog
/// is shown to the VXDialogDriver in use first. GUI thread only.
class VXGUIWIDGETS_EXPORT VXRequest : public QObject
{
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(VXRequest)

public:
    /// Has no window of its own; any number of objects may exist.
    explicit VXRequest(QObject* theParent = nullptr);
    ~VXRequest() override;

    /// A box with an OK button.
    void information(const QString& theTitle, const QString& theText,
                     const QString& theDetails = {}, QWidget* theParent = nullptr);

    /// The same with the sign for a warning.
    void warning(const QString& theTitle, const QString& theText, const QString& theDetails = {},
                 QWidget* theParent = nullptr);

    /// The same with the sign for an error.
    void critical(const QString& theTitle, const QString& theText, const QString& theDetails = {},
                  QWidget* theParent = nullptr);

    /// Asks yes or no; true = yes. Escape and closing are no. theDefaultIsYes names the button that
    /// Return presses.
    [[nodiscard]] bool question(const QString& theTitle, const QString& theText,
                                bool theDefaultIsYes, QWidget* theParent = nullptr);

    /// Returns the pressed button; NoButton when the box vanished with its parent.
    QMessageBox::StandardButton
    messageBox(QMessageBox::Icon theIcon, const QString& theTitle, const QString& theText,
               const QString& theDetails, QMessageBox::StandardButtons theButtons,
               QMessageBox::StandardButton theDefault = QMessageBox::NoButton,
               QMessageBox::StandardButton theEscape = QMessageBox::NoButton,
               const QString& theObjectName = {}, QWidget* theParent = nullptr);

    /// Like messageBox(), but presses theDefault after theSeconds. With 0 seconds or less it is an
    /// ordinary box.
    QMessageBox::StandardButton
    autoCloseMessageBox(QMessageBox::Icon theIcon, const QString& theTitle, const QString& theText,
                        const QString& theDetails, int theSeconds,
                        QMessageBox::StandardButtons theButtons,
                        QMessageBox::StandardButton theDefault,
                        QMessageBox::StandardButton theEscape = QMessageBox::NoButton,
                        const QString& theObjectName = {}, QWidget* theParent = nullptr);

    /// Asks for one of theChoices, each a command link; none when the user cancelled.
    [[nodiscard]] std::optional<int> choose(const QString& theTitle, const QString& theText,
                                            const QList<VXDialogChoice>& theChoices,
                                            QWidget* theParent = nullptr);

    /// Asks for user name and password, which the answer holds when its button is Ok.
    [[nodiscard]] VXDialogAnswer askForLogin(const QString& theText, QWidget* theParent = nullptr);

    /// The title of boxes that warn, in the language of the application.
    [[nodiscard]] static QString attentionString();

    /// The title of boxes that only tell something, in the language of the application.
    [[nodiscard]] static QString hintString();

    /// Lets theDriver (null: none) see and answer every dialog; returns the one before. The caller
    /// keeps the ownership.
    static VXDialogDriver* setDialogDriver(VXDialogDriver* theDriver);

private:
    QMessageBox::StandardButton ask(const VXDialogQuestion& theQuestion);
};
