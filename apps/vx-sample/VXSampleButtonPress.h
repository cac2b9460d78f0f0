#pragma once

#include <QtCore/QObject>
#include <QtCore/QString>
#include <QtWidgets/QDialogButtonBox>

/// Presses a standard button of a named dialog as soon as that appears, for dialogs that no answers
/// file reaches. Nothing happens without such a button. Main thread.
class VXSampleButtonPress : public QObject
{
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(VXSampleButtonPress)

public:
    VXSampleButtonPress(const QString& theDialogName, QDialogButtonBox::StandardButton theButton);

    bool eventFilter(QObject* theObject, QEvent* theEvent) override;

private:
    const QString myDialogName;
    const QDialogButtonBox::StandardButton myButton;
};
