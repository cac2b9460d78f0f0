#include "VXProgressDialogController.h"

#include "VXMessageBox.h"

#include <QtWidgets/QLabel>
#include <QtWidgets/QProgressBar>
#include <QtWidgets/QProgressDialog>
#include <QtWidgets/QPushButton>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

// The bar itself: QProgressDialog::setValue() would run the event loop in between.
QProgressBar* barOf(const QProgressDialog* theDialog)
{
    return theDialog->findChild<QProgressBar*>(u"progressBar"_s);
}

} // namespace

VXProgressDialogController::VXProgressDialogController(QObject* theParent)
    : QObject(theParent)
{
}

VXProgressDialogController::~VXProgressDialogController()
{
    delete myDialog;
}

void VXProgressDialogController::openProgress(const QString& theText, int theMinimum,
                                              int theMaximum, QWidget* theParent)
{
    if (!isOpen())
        createDialog(theParent);
    myDialog->setLabelText(theText);
    QProgressBar* bar = barOf(myDialog);
    bar->setRange(theMinimum, theMaximum);
    bar->setValue(theMinimum);
    bar->setAccessibleName(theText);
    myDialog->show();
}

void VXProgressDialogController::createDialog(QWidget* theParent)
{
    delete myDialog;
    myDialog = new QProgressDialog(theParent); // deleted when it closes, or with its parent
    myDialog->setObjectName(u"progressDialog"_s);
    myDialog->setWindowModality(Qt::WindowModal);
    myDialog->setWindowTitle(tr("Bitte warten"));
    myDialog->setMinimumDuration(0);
    myDialog->setAutoClose(false);
    myDialog->setAutoReset(false);

    auto* bar = new QProgressBar(myDialog);
    bar->setObjectName(u"progressBar"_s);
    myDialog->setBar(bar);
    auto* label = new QLabel(myDialog);
    label->setObjectName(u"messageLabel"_s);
    label->setAlignment(Qt::AlignLeft | Qt::AlignVCenter);
    myDialog->setLabel(label);
    myDialog->setCancelButtonText(VXMessageBox::buttonText(QMessageBox::Cancel));
    connect(myDialog, &QProgressDialog::canceled, this, &VXProgressDialogController::cancel);
}

void VXProgressDialogController::increaseProgress(int theStep)
{
    if (!isOpen())
        return;
    QProgressBar* bar = barOf(myDialog);
    const bool isIndeterminate = bar->minimum() == 0 && bar->maximum() == 0;
    if (!isIndeterminate)
        bar->setValue(std::clamp(bar->value() + theStep, bar->minimum(), bar->maximum()));
}

void VXProgressDialogController::closeProgress(int theFinalValue)
{
    if (!isOpen())
        return;
    QProgressDialog* dialog = std::exchange(myDialog, nullptr);
    dialog->disconnect(this); // hiding it is no cancelling
    barOf(dialog)->setValue(theFinalValue);
    dialog->hide();
    dialog->deleteLater(); // it may be the one whose signal is being handled
}

bool VXProgressDialogController::isOpen() const
{
    return myDialog && !myDialog->isHidden();
}

void VXProgressDialogController::cancel()
{
    closeProgress(barOf(myDialog)->value());
    if (QProgressDialog* dialog = std::exchange(myDialog, nullptr)) // hidden already
        dialog->deleteLater();
    Q_EMIT processCanceled();
}
