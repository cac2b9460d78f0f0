#pragma once

#include "VXGUIWidgetsExport.h"
#include "VXMessageBox.h"

#include <QtCore/QDeadlineTimer>
#include <QtCore/QTimer>

class QLabel;

/// A message box that presses its default button when its time is over.
///
/// The time left stands in a line of its own, and in seconds in the dynamic property
/// "remainingSeconds". It runs against a deadline, so a suspended computer or a busy event loop
/// does not lengthen it. In the shown text "%2" is replaced by the minutes left, rounded up, and
/// "%1" by the seconds; the text as given stays in the dynamic property "messageTemplate". Without
/// seconds it is an ordinary message box. GUI thread only.
class VXGUIWIDGETS_EXPORT VXAutoCloseMessageBox : public VXMessageBox
{
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(VXAutoCloseMessageBox)

public:
    /// Takes VXDialogQuestion::seconds as the time; the clock starts when the box appears.
    explicit VXAutoCloseMessageBox(const VXDialogQuestion& theQuestion);
    ~VXAutoCloseMessageBox() override;

    /// Milliseconds between two looks at the clock; 250 at the start. The deadline does not depend
    /// on it.
    void setTickInterval(int theMilliseconds);

    /// Seconds left, rounded up; 0 without a countdown.
    [[nodiscard]] int remainingSeconds() const;

protected:
    /// Starts the countdown when the box appears for the first time.
    void showEvent(QShowEvent* theEvent) override;

private:
    void startCountdown();
    void addCountdownLine();
    void tick();
    void showRemaining(int theSeconds);
    void announce(int theSeconds);
    void expire();
    [[nodiscard]] QString countdownText(int theSeconds) const;

    QString myTemplate;
    int mySeconds = 0;
    int myShownSeconds = -1;
    QDeadlineTimer myDeadline;
    QTimer myTimer;
    QLabel* myCountdown = nullptr; // child of this
};
