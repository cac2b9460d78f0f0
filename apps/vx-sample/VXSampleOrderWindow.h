#pragma once

#include <QtWidgets/QWidget>

#include <memory>

class QJsonValue;
class VXAbstractCommunication;
class VXSampleWizardScreen;
class VXWebView;

/// A window with the order summary page, which talks to the wizard screen over the channel. GUI
/// thread.
class VXSampleOrderWindow : public QWidget
{
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(VXSampleOrderWindow)

public:
    /// Loads the page "ordersummary.html" of the application's pages. Both must outlive the window.
    VXSampleOrderWindow(VXSampleWizardScreen& theScreen,
                        const VXAbstractCommunication& theCommunication);
    ~VXSampleOrderWindow() override;

    [[nodiscard]] VXWebView& view() { return *myView; }

Q_SIGNALS:
    void closed();

protected:
    void closeEvent(QCloseEvent* theEvent) override;

private:
    void callPage(const QString& theFunction, const QJsonValue& theArgument);

    std::unique_ptr<VXWebView> myView;
};
