#pragma once

#include "VXSamplePanel.h"

#include <memory>

class QLabel;
class QLineEdit;
class QPushButton;
class VXSampleCloudSession;
class VXSampleOutcomeView;
struct VXSampleContext;

/// The page for the cloud: a session with user name and password, its renewal and end, and logins
/// on a provider's page. Main thread.
class VXSampleLoginPanel : public VXSamplePanel
{
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(VXSampleLoginPanel)

public:
    /// `theContext` must outlive the page.
    VXSampleLoginPanel(VXSampleContext& theContext, QWidget* theParent);
    ~VXSampleLoginPanel() override;

private:
    void addForm();
    void addButtons();
    void openSession();
    void renew();
    void closeSession();
    void logInOnPage(const QString& theKind);
    void setBusy(bool theIsBusy);
    void showState();

    VXSampleContext& myContext;
    QLineEdit* myUser = nullptr; // children of this
    QLineEdit* myPassword = nullptr;
    QLabel* myState = nullptr;
    QPushButton* myOpen = nullptr;
    QPushButton* myRenew = nullptr;
    QPushButton* myClose = nullptr;
    VXSampleOutcomeView* myOutcome = nullptr;
    std::unique_ptr<VXSampleCloudSession> mySession; // null before the first login
    bool myIsBusy = false;                           // the session is in an exchange
};
