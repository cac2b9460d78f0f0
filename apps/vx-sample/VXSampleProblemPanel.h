#pragma once

#include "VXSamplePanel.h"

class QListWidget;
class QPushButton;
class QSpinBox;
class VXSampleOutcomeView;
struct VXSampleContext;

/// The page for network problems: each is brought about for real, and the mediator tells the user.
/// Below, the text of any error code. Main thread.
class VXSampleProblemPanel : public VXSamplePanel
{
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(VXSampleProblemPanel)

public:
    /// `theContext` must outlive the page.
    VXSampleProblemPanel(VXSampleContext& theContext, QWidget* theParent);
    ~VXSampleProblemPanel() override;

private:
    void fillList();
    QLayout* createCodeRow();
    void causeSelected();
    void showCode();

    VXSampleContext& myContext;
    QListWidget* myList = nullptr; // children of this
    QPushButton* myCause = nullptr;
    QSpinBox* myCode = nullptr;
    VXSampleOutcomeView* myOutcome = nullptr;
};
