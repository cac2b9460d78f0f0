#pragma once

#include "VXSamplePanel.h"

#include <QtCore/QPointer>

class QComboBox;
class QFormLayout;
class QLineEdit;
class QPlainTextEdit;
class QProgressBar;
class QPushButton;
class QSpinBox;
class VXHttpOperation;
class VXSampleOutcomeView;
struct VXSampleContext;

/// The page for HTTP exchanges: any method and address, files up and down, with progress and a
/// way to cancel. An exchange runs in the main thread, which stays responsive meanwhile.
class VXSampleHttpPanel : public VXSamplePanel
{
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(VXSampleHttpPanel)

public:
    /// `theContext` must outlive the page.
    VXSampleHttpPanel(VXSampleContext& theContext, QWidget* theParent);
    ~VXSampleHttpPanel() override;

    void cancel() override;

private:
    void fillForm(QFormLayout* theForm);
    void addExamples();
    void takeExample(int theIndex);
    QWidget* createButtons();
    void send();
    void sendInThreads(const QUrl& theUrl);
    void uploadFile();
    void exchange(VXHttpOperation& theOperation);
    QUrl address();
    void setRunning(VXHttpOperation* theOperation);
    Q_SLOT void showProgress(qint64 theDone, qint64 theTotal);

    VXSampleContext& myContext;
    QComboBox* myExamples = nullptr; // children of this
    QComboBox* myMethod = nullptr;
    QLineEdit* myAddress = nullptr;
    QPlainTextEdit* myPayload = nullptr;
    QSpinBox* myTimeout = nullptr;
    QSpinBox* myThreads = nullptr;
    QPushButton* mySend = nullptr;
    QPushButton* myUpload = nullptr;
    QPushButton* myCancel = nullptr;
    QProgressBar* myProgress = nullptr;
    VXSampleOutcomeView* myOutcome = nullptr;
    QPointer<VXHttpOperation> myRunning; // on the stack of exchange()
};
