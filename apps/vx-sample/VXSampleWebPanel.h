#pragma once

#include "VXSamplePanel.h"

#include <memory>

class QFrame;
class QLabel;
class QLineEdit;
class QProgressBar;
class QVBoxLayout;
class VXWebView;
struct VXSampleContext;

/// The page for web content: pages of the application in a web view, scripts, printing, PDF, and
/// the order summary that talks to a native object. The web engine starts with the first look at
/// this page. Main thread.
class VXSampleWebPanel : public VXSamplePanel
{
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(VXSampleWebPanel)

public:
    /// `theContext` must outlive the page.
    VXSampleWebPanel(VXSampleContext& theContext, QWidget* theParent);
    ~VXSampleWebPanel() override;

    void cancel() override;
    void activate() override;

protected:
    void changeEvent(QEvent* theEvent) override;

private:
    void addPageButtons();
    void addAddressLine();
    void addScriptLine();
    void addNotice();
    void createView();
    void placeViewInTabOrder();
    void showSkin();
    void showCrash();
    void reload();
    void open(const QString& theAddress);
    void openReceipt();
    void openOrderSummary();
    void runScript();

    VXSampleContext& myContext;
    QLineEdit* myAddress = nullptr; // children of this
    QProgressBar* myProgress = nullptr;
    QFrame* myNotice = nullptr; // only to be seen after a crash
    QVBoxLayout* myViewPlace = nullptr;
    QLineEdit* myScript = nullptr;
    QLabel* myResult = nullptr;
    std::unique_ptr<VXWebView> myView; // from activate() on; its widget is a child of this
};
