#include "VXAutoCloseMessageBox.h"

#include "VXDialogQuestion.h"

#include <QtGui/QAccessible>
#include <QtGui/QFontMetrics>
#include <QtWidgets/QGridLayout>
#include <QtWidgets/QLabel>
#include <QtWidgets/QPushButton>

#include <chrono>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

constexpr int tickMilliseconds = 250;

int minutesRoundedUp(int theSeconds)
{
    return (theSeconds + 59) / 60;
}

// In the text of a running box both markers have a meaning; elsewhere they stay as they are.
QString withTimeLeft(QString theTemplate, int theSeconds)
{
    return theTemplate.replace(u"%2"_s, QString::number(minutesRoundedUp(theSeconds)))
        .replace(u"%1"_s, QString::number(theSeconds));
}

} // namespace

VXAutoCloseMessageBox::VXAutoCloseMessageBox(const VXDialogQuestion& theQuestion)
    : VXMessageBox(theQuestion)
    , myTemplate(text())
    , mySeconds(qMax(0, theQuestion.seconds))
    , myDeadline(QDeadlineTimer::Forever)
    , myTimer(this)
{
    setProperty("messageTemplate", myTemplate);
    myTimer.setTimerType(Qt::PreciseTimer);
    myTimer.setInterval(tickMilliseconds);
    connect(&myTimer, &QTimer::timeout, this, &VXAutoCloseMessageBox::tick);
    connect(this, &QMessageBox::buttonClicked, &myTimer, &QTimer::stop);
    connect(this, &QDialog::finished, &myTimer, &QTimer::stop);
    if (mySeconds > 0)
        addCountdownLine();
}

VXAutoCloseMessageBox::~VXAutoCloseMessageBox() = default;

void VXAutoCloseMessageBox::setTickInterval(int theMilliseconds)
{
    myTimer.setInterval(qMax(1, theMilliseconds));
}

int VXAutoCloseMessageBox::remainingSeconds() const
{
    if (myDeadline.isForever())
        return mySeconds;
    return static_cast<int>(std::chrono::ceil<std::chrono::seconds>(
                                std::chrono::milliseconds(myDeadline.remainingTime()))
                                .count());
}

void VXAutoCloseMessageBox::showEvent(QShowEvent* theEvent)
{
    if (mySeconds > 0 && myDeadline.isForever())
        startCountdown();
    VXMessageBox::showEvent(theEvent);
}

void VXAutoCloseMessageBox::startCountdown()
{
    myDeadline = QDeadlineTimer(std::chrono::seconds(mySeconds), Qt::PreciseTimer);
    announce(mySeconds);
    myTimer.start();
}

void VXAutoCloseMessageBox::addCountdownLine()
{
    myCountdown = new QLabel(this);
    myCountdown->setObjectName(u"countdownLabel"_s);
    myCountdown->setAccessibleName(tr("Verbleibende Zeit"));
    // As wide as its widest text, so that the box does not move while the digits change.
    const QFontMetrics metrics(myCountdown->font());
    const int width = qMax(metrics.horizontalAdvance(countdownText(mySeconds)),
                           metrics.horizontalAdvance(countdownText(59)));
    myCountdown->setMinimumWidth(width + metrics.averageCharWidth());
    // The row below the text is the one of QMessageBox's informative text, which is not used here.
    if (auto* grid = qobject_cast<QGridLayout*>(layout()))
        grid->addWidget(myCountdown, 1, grid->columnCount() - 1);
    showRemaining(mySeconds); // before the box appears: its size counts the line in
}

void VXAutoCloseMessageBox::tick()
{
    if (myDeadline.hasExpired())
        expire();
    else if (const int seconds = remainingSeconds(); seconds != myShownSeconds)
        showRemaining(seconds);
}

void VXAutoCloseMessageBox::showRemaining(int theSeconds)
{
    myShownSeconds = theSeconds;
    setProperty("remainingSeconds", theSeconds);
    myCountdown->setText(countdownText(theSeconds));
    const QString text = withTimeLeft(myTemplate, theSeconds);
    if (text != this->text())
        setText(text);
    if (theSeconds % 60 == 0 || theSeconds == 30 || theSeconds == 10)
        announce(theSeconds);
}

// Not each second: a screen reader would speak of nothing else.
void VXAutoCloseMessageBox::announce(int theSeconds)
{
    myCountdown->setAccessibleDescription(countdownText(theSeconds));
    QAccessibleEvent event(myCountdown, QAccessible::Alert);
    QAccessible::updateAccessibility(&event);
}

void VXAutoCloseMessageBox::expire()
{
    myTimer.stop();
    setProperty("remainingSeconds", 0);
    if (QPushButton* button = defaultButton())
        button->click();
    else
        reject();
}

QString VXAutoCloseMessageBox::countdownText(int theSeconds) const
{
    if (theSeconds >= 60) {
        return tr("Automatische Fortsetzung in %1:%2")
            .arg(QString::number(theSeconds / 60),
                 QString::number(theSeconds % 60).rightJustified(2, u'0'));
    }
    if (theSeconds == 1)
        return tr("Automatische Fortsetzung in 1 Sekunde");
    return tr("Automatische Fortsetzung in %1 Sekunden").arg(QString::number(theSeconds));
}
