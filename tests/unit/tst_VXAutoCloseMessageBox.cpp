#include <VXGUIWidgets/VXAutoCloseMessageBox.h>

#include <VXGUIWidgets/VXDialogQuestion.h>

#include "VXTestMain.h"

#include <QtCore/QElapsedTimer>
#include <QtTest/QSignalSpy>
#include <QtWidgets/QApplication>
#include <QtWidgets/QLabel>
#include <QtWidgets/QPushButton>
#include <QtWidgets/QTextEdit>

using namespace Qt::StringLiterals;

namespace {

VXDialogQuestion question(int theSeconds, const QString& theText = u"Bitte warten."_s)
{
    VXDialogQuestion question;
    question.kind = VXDialogKind::AutoClose;
    question.icon = QMessageBox::Warning;
    question.title = u"Einen Moment bitte"_s;
    question.text = theText;
    question.details = u"Fehlercode: 1005"_s;
    question.buttons = QMessageBox::Retry | QMessageBox::Cancel;
    question.defaultButton = QMessageBox::Retry;
    question.escapeButton = QMessageBox::Cancel;
    question.seconds = theSeconds;
    return question;
}

QLabel* countdownOf(const QMessageBox& theBox)
{
    return theBox.findChild<QLabel*>(u"countdownLabel"_s);
}

} // namespace

class tst_VXAutoCloseMessageBox : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void expiryPressesTheDefaultButtonOnce();
    void expiryDoesNotComeEarly();
    void aPressedButtonStopsTheClock();
    void escapeGivesTheEscapeButton();
    void theCountdownReadsMinutesAndSeconds_data();
    void theCountdownReadsMinutesAndSeconds();
    void markersShowTheTimeLeftAndTheTemplateStays();
    void openingTheDetailsDoesNotStopTheClock();
    void theAccessibleNameOfTheCountdownStays();
    void withoutSecondsTheTextKeepsItsMarkers();
};

void tst_VXAutoCloseMessageBox::expiryPressesTheDefaultButtonOnce()
{
    VXAutoCloseMessageBox box(question(1));
    box.setTickInterval(10);
    QSignalSpy clicked(box.button(QMessageBox::Retry), &QAbstractButton::clicked);
    QCOMPARE(box.exec(), static_cast<int>(QMessageBox::Retry));
    QCOMPARE(clicked.count(), 1);
    QCOMPARE(box.clickedButton(), box.button(QMessageBox::Retry));
    QCOMPARE(box.property("remainingSeconds").toInt(), 0);
}

void tst_VXAutoCloseMessageBox::expiryDoesNotComeEarly()
{
    VXAutoCloseMessageBox box(question(1));
    box.setTickInterval(1);
    QElapsedTimer clock;
    clock.start();
    box.exec();
    QVERIFY2(clock.elapsed() >= 1000, qPrintable(QString::number(clock.elapsed())));
}

void tst_VXAutoCloseMessageBox::aPressedButtonStopsTheClock()
{
    VXAutoCloseMessageBox box(question(1));
    box.setTickInterval(1);
    QSignalSpy retry(box.button(QMessageBox::Retry), &QAbstractButton::clicked);
    box.open();
    box.button(QMessageBox::Cancel)->click();
    QCOMPARE(box.result(), static_cast<int>(QMessageBox::Cancel));

    // A box that expires later proves that the stopped one had its time.
    VXAutoCloseMessageBox later(question(1));
    later.exec();
    QCOMPARE(retry.count(), 0);
}

void tst_VXAutoCloseMessageBox::escapeGivesTheEscapeButton()
{
    VXAutoCloseMessageBox box(question(60));
    box.open();
    QTest::keyClick(&box, Qt::Key_Escape);
    QCOMPARE(box.result(), static_cast<int>(QMessageBox::Cancel));
}

void tst_VXAutoCloseMessageBox::theCountdownReadsMinutesAndSeconds_data()
{
    QTest::addColumn<int>("seconds");
    QTest::addColumn<QString>("expected");

    QTest::newRow("five minutes") << 300 << u"Automatische Fortsetzung in 5:00"_s;
    QTest::newRow("padded seconds") << 185 << u"Automatische Fortsetzung in 3:05"_s;
    QTest::newRow("one minute") << 60 << u"Automatische Fortsetzung in 1:00"_s;
    QTest::newRow("one second") << 1 << u"Automatische Fortsetzung in 1 Sekunde"_s;
    QTest::newRow("below a minute") << 37 << u"Automatische Fortsetzung in 37 Sekunden"_s;
}

void tst_VXAutoCloseMessageBox::theCountdownReadsMinutesAndSeconds()
{
    QFETCH(int, seconds);
    QFETCH(QString, expected);

    VXAutoCloseMessageBox box(question(seconds));
    box.open();
    QVERIFY(countdownOf(box) != nullptr);
    QVERIFY(countdownOf(box)->isVisible());
    QCOMPARE(countdownOf(box)->text(), expected);
    QCOMPARE(box.property("remainingSeconds").toInt(), seconds);
}

void tst_VXAutoCloseMessageBox::markersShowTheTimeLeftAndTheTemplateStays()
{
    VXAutoCloseMessageBox box(question(181, u"in %2 Minuten, also %1 Sekunden"_s));
    box.open();
    QCOMPARE(box.text(), u"in 4 Minuten, also 181 Sekunden"_s);
    QCOMPARE(box.property("messageTemplate").toString(), u"in %2 Minuten, also %1 Sekunden"_s);
}

void tst_VXAutoCloseMessageBox::openingTheDetailsDoesNotStopTheClock()
{
    VXAutoCloseMessageBox box(question(1));
    box.setTickInterval(10);
    box.open();
    const auto buttons = box.buttons();
    for (auto* button : buttons) {
        if (box.buttonRole(button) == QMessageBox::ActionRole)
            button->click();
    }
    QVERIFY(box.findChild<QTextEdit*>()->isVisible());
    QVERIFY(countdownOf(box)->isVisible());
    QTRY_COMPARE(box.result(), static_cast<int>(QMessageBox::Retry));
}

void tst_VXAutoCloseMessageBox::theAccessibleNameOfTheCountdownStays()
{
    VXAutoCloseMessageBox box(question(2));
    box.setTickInterval(5);
    box.open();
    QCOMPARE(countdownOf(box)->accessibleName(), u"Verbleibende Zeit"_s);
    QTRY_VERIFY(box.property("remainingSeconds").toInt() < 2);
    QCOMPARE(countdownOf(box)->accessibleName(), u"Verbleibende Zeit"_s);
}

void tst_VXAutoCloseMessageBox::withoutSecondsTheTextKeepsItsMarkers()
{
    VXAutoCloseMessageBox box(question(0, u"in %2 Minuten"_s));
    box.open();
    QCOMPARE(box.text(), u"in %2 Minuten"_s);
    QCOMPARE(countdownOf(box), nullptr);
    QCOMPARE(box.remainingSeconds(), 0);
}

VX_TEST_MAIN(QApplication, tst_VXAutoCloseMessageBox)

#include "tst_VXAutoCloseMessageBox.moc"
