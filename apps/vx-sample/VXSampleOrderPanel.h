#pragma once

#include "VXSamplePanel.h"

class QCheckBox;
class QLineEdit;
class QPushButton;
class QSpinBox;
class VXNetworkingResult;
class VXSampleOutcomeView;
struct VXSampleContext;

/// The page for orders: one exchange of the XML order protocol, whose answer the service makes up
/// as the user wishes. Main thread.
class VXSampleOrderPanel : public VXSamplePanel
{
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(VXSampleOrderPanel)

public:
    /// `theContext` must outlive the page.
    VXSampleOrderPanel(VXSampleContext& theContext, QWidget* theParent);
    ~VXSampleOrderPanel() override;

private:
    void addWishes();
    [[nodiscard]] QString pathAndQuery() const;
    void order();
    void show(const VXNetworkingResult& theResult);

    VXSampleContext& myContext;
    QSpinBox* myCode = nullptr; // children of this
    QLineEdit* myText = nullptr;
    QLineEdit* myCoupon = nullptr;
    QSpinBox* myWait = nullptr;
    QCheckBox* myMediate = nullptr;
    QPushButton* myOrder = nullptr;
    VXSampleOutcomeView* myOutcome = nullptr;
};
