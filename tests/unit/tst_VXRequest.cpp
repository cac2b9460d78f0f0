#include <VXGUIWidgets/VXRequest.h>

#include "VXDialogVisitor.h"
#include "VXTestMain.h"

#include <QtTest/QSignalSpy>
#include <QtWidgets/QApplication>
#include <QtWidgets/QDialog>
#include <QtWidgets/QPushButton>

#include <algorithm>
#include <memory>

using namespace Qt::StringLiterals;

namespace {

QMessageBox* boxOf(QDialog* theDialog)
{
    auto* box = qobject_cast<QMessageBox*>(theDialog);
    if (box == nullptr)
        qFatal("not a message box");
    return box;
}

class RecordingDriver : public VXDialogDriver
{
public:
    std::optional<VXDialogAnswer> ask(const VXDialogQuestion& theQuestion) override
    {
        questions << theQuestion;
        return answer;
    }

    QList<VXDialogQuestion> questions;
    VXDialogAnswer answer;
};

} // namespace

class tst_VXRequest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void cleanup() { VXRequest::setDialogDriver(nullptr); }

    void stockTitlesAreGerman();
    void informationWarningAndCriticalHaveTheirIcon_data();
    void informationWarningAndCriticalHaveTheirIcon();
    void questionIsTrueForYesOnly_data();
    void questionIsTrueForYesOnly();
    void escapeAnswersAQuestionWithNo();
    void closingAnswersAQuestionWithNo();
    void theDefaultButtonOfAQuestionIsTheCallersChoice();
    void messageBoxReturnsThePressedButton_data();
    void messageBoxReturnsThePressedButton();
    void escapePressesTheEscapeButton();
    void detailsHideBehindAGermanButton();
    void aBoxOutlivesItsDestroyedParent();
    void boxesNest();
    void theDriverAnswersInsteadOfTheUser();
    void theDriverSeesWhatTheBoxWouldShow();
    void anAutoCloseBoxWithoutSecondsHasNoCountdown();
};

void tst_VXRequest::stockTitlesAreGerman()
{
    QCOMPARE(VXRequest::attentionString(), u"Achtung"_s);
    QCOMPARE(VXRequest::hintString(), u"Hinweis"_s);
}

void tst_VXRequest::informationWarningAndCriticalHaveTheirIcon_data()
{
    QTest::addColumn<int>("icon");

    QTest::newRow("information") << static_cast<int>(QMessageBox::Information);
    QTest::newRow("warning") << static_cast<int>(QMessageBox::Warning);
    QTest::newRow("critical") << static_cast<int>(QMessageBox::Critical);
}

void tst_VXRequest::informationWarningAndCriticalHaveTheirIcon()
{
    QFETCH(int, icon);

    VXRequest request;
    VXDialogVisitor user([icon](QDialog* theDialog) {
        auto* box = boxOf(theDialog);
        QCOMPARE(static_cast<int>(box->icon()), icon);
        QCOMPARE(box->windowTitle(), u"Titel"_s);
        QCOMPARE(box->text(), u"Text"_s);
        QCOMPARE(box->detailedText(), u"Einzelheiten"_s);
        QCOMPARE(box->standardButtons(), QMessageBox::Ok);
        QCOMPARE(box->button(QMessageBox::Ok)->text(), u"OK"_s);
        QVERIFY(box->isModal());
        box->button(QMessageBox::Ok)->click();
    });
    if (icon == QMessageBox::Information)
        request.information(u"Titel"_s, u"Text"_s, u"Einzelheiten"_s);
    else if (icon == QMessageBox::Warning)
        request.warning(u"Titel"_s, u"Text"_s, u"Einzelheiten"_s);
    else
        request.critical(u"Titel"_s, u"Text"_s, u"Einzelheiten"_s);
    QCOMPARE(user.count(), 1);
}

void tst_VXRequest::questionIsTrueForYesOnly_data()
{
    QTest::addColumn<int>("button");
    QTest::addColumn<QString>("label");
    QTest::addColumn<bool>("expected");

    QTest::newRow("yes") << static_cast<int>(QMessageBox::Yes) << u"Ja"_s << true;
    QTest::newRow("no") << static_cast<int>(QMessageBox::No) << u"Nein"_s << false;
}

void tst_VXRequest::questionIsTrueForYesOnly()
{
    QFETCH(int, button);
    QFETCH(QString, label);
    QFETCH(bool, expected);

    VXRequest request;
    VXDialogVisitor user([&](QDialog* theDialog) {
        auto* pressed = boxOf(theDialog)->button(static_cast<QMessageBox::StandardButton>(button));
        QCOMPARE(pressed->text(), label);
        pressed->click();
    });
    QCOMPARE(request.question(u"Frage"_s, u"Weiter?"_s, true), expected);
}

void tst_VXRequest::escapeAnswersAQuestionWithNo()
{
    VXRequest request;
    VXDialogVisitor user([](QDialog* theDialog) { QTest::keyClick(theDialog, Qt::Key_Escape); });
    QVERIFY(!request.question(u"Frage"_s, u"Weiter?"_s, true));
}

void tst_VXRequest::closingAnswersAQuestionWithNo()
{
    VXRequest request;
    VXDialogVisitor user([](QDialog* theDialog) { theDialog->close(); });
    QVERIFY(!request.question(u"Frage"_s, u"Weiter?"_s, true));
}

void tst_VXRequest::theDefaultButtonOfAQuestionIsTheCallersChoice()
{
    VXRequest request;
    QString defaultText;
    VXDialogVisitor user([&](QDialog* theDialog) {
        defaultText = boxOf(theDialog)->defaultButton()->text();
        theDialog->close();
    });
    (void)request.question(u"Frage"_s, u"Weiter?"_s, true);
    QCOMPARE(defaultText, u"Ja"_s);
    (void)request.question(u"Frage"_s, u"Weiter?"_s, false);
    QCOMPARE(defaultText, u"Nein"_s);
}

void tst_VXRequest::messageBoxReturnsThePressedButton_data()
{
    QTest::addColumn<int>("button");
    QTest::addColumn<QString>("label");

    QTest::newRow("retry") << static_cast<int>(QMessageBox::Retry) << u"Wiederholen"_s;
    QTest::newRow("cancel") << static_cast<int>(QMessageBox::Cancel) << u"Abbrechen"_s;
}

void tst_VXRequest::messageBoxReturnsThePressedButton()
{
    QFETCH(int, button);
    QFETCH(QString, label);

    const auto expected = static_cast<QMessageBox::StandardButton>(button);
    VXRequest request;
    VXDialogVisitor user([&](QDialog* theDialog) {
        QCOMPARE(theDialog->objectName(), u"retryBox"_s);
        QCOMPARE(boxOf(theDialog)->button(expected)->text(), label);
        boxOf(theDialog)->button(expected)->click();
    });
    QCOMPARE(request.messageBox(QMessageBox::Warning, u"Titel"_s, u"Text"_s, {},
                                QMessageBox::Retry | QMessageBox::Cancel, QMessageBox::Retry,
                                QMessageBox::Cancel, u"retryBox"_s),
             expected);
}

void tst_VXRequest::escapePressesTheEscapeButton()
{
    VXRequest request;
    VXDialogVisitor user([](QDialog* theDialog) { QTest::keyClick(theDialog, Qt::Key_Escape); });
    QCOMPARE(request.messageBox(QMessageBox::Critical, u"Titel"_s, u"Text"_s, u"Fehlercode: 5"_s,
                                QMessageBox::Retry | QMessageBox::Cancel, QMessageBox::Retry,
                                QMessageBox::Cancel),
             QMessageBox::Cancel);
}

void tst_VXRequest::detailsHideBehindAGermanButton()
{
    VXRequest request;
    VXDialogVisitor user([](QDialog* theDialog) {
        auto* box = boxOf(theDialog);
        const auto buttons = box->buttons();
        const auto details = std::ranges::find_if(buttons, [box](QAbstractButton* theButton) {
            return box->buttonRole(theButton) == QMessageBox::ActionRole;
        });
        QVERIFY(details != buttons.end());
        QCOMPARE((*details)->text(), u"Details anzeigen"_s);
        (*details)->click();
        QTRY_COMPARE((*details)->text(), u"Details verbergen"_s);
        (*details)->click();
        QTRY_COMPARE((*details)->text(), u"Details anzeigen"_s);
        box->button(QMessageBox::Ok)->click();
    });
    request.warning(u"Titel"_s, u"Text"_s, u"Fehlercode: 5"_s);
    QCOMPARE(user.count(), 1);
}

void tst_VXRequest::aBoxOutlivesItsDestroyedParent()
{
    VXRequest request;
    auto parent = std::make_unique<QWidget>();
    VXDialogVisitor user([&](QDialog* theDialog) {
        QCOMPARE(theDialog->parentWidget(), parent.get());
        parent.reset();
    });
    QCOMPARE(request.messageBox(QMessageBox::Warning, u"Titel"_s, u"Text"_s, {}, QMessageBox::Ok,
                                QMessageBox::Ok, QMessageBox::Ok, {}, parent.get()),
             QMessageBox::NoButton);
    QCOMPARE(user.count(), 1);
}

void tst_VXRequest::boxesNest()
{
    VXRequest request;
    QStringList order;
    VXDialogVisitor user([&](QDialog* theDialog) {
        order << theDialog->windowTitle();
        if (theDialog->windowTitle() == u"außen"_s)
            request.information(u"innen"_s, u"Text"_s);
        order << theDialog->windowTitle();
        theDialog->close();
    });
    request.information(u"außen"_s, u"Text"_s);
    QCOMPARE(order, (QStringList{u"außen"_s, u"innen"_s, u"innen"_s, u"außen"_s}));
}

void tst_VXRequest::theDriverAnswersInsteadOfTheUser()
{
    RecordingDriver driver;
    driver.answer.button = QMessageBox::Yes;
    VXRequest::setDialogDriver(&driver);
    VXDialogVisitor user([](QDialog* theDialog) { theDialog->close(); });

    VXRequest request;
    QVERIFY(request.question(u"Frage"_s, u"Weiter?"_s, false));
    QCOMPARE(user.count(), 0);
}

void tst_VXRequest::theDriverSeesWhatTheBoxWouldShow()
{
    RecordingDriver driver;
    VXRequest::setDialogDriver(&driver);

    VXRequest request;
    request.autoCloseMessageBox(QMessageBox::Warning, u"Einen Moment bitte"_s, u"Text"_s,
                                u"Details"_s, 200, QMessageBox::Retry | QMessageBox::Cancel,
                                QMessageBox::Retry, QMessageBox::Cancel, u"box"_s);
    QCOMPARE(driver.questions.size(), 1);
    const VXDialogQuestion& question = driver.questions.first();
    QCOMPARE(question.kind, VXDialogKind::AutoClose);
    QCOMPARE(question.icon, QMessageBox::Warning);
    QCOMPARE(question.title, u"Einen Moment bitte"_s);
    QCOMPARE(question.text, u"Text"_s);
    QCOMPARE(question.details, u"Details"_s);
    QCOMPARE(question.seconds, 200);
    QCOMPARE(question.buttons, QMessageBox::Retry | QMessageBox::Cancel);
    QCOMPARE(question.defaultButton, QMessageBox::Retry);
    QCOMPARE(question.escapeButton, QMessageBox::Cancel);
    QCOMPARE(question.objectName, u"box"_s);
}

void tst_VXRequest::anAutoCloseBoxWithoutSecondsHasNoCountdown()
{
    VXRequest request;
    VXDialogVisitor user([](QDialog* theDialog) {
        QCOMPARE(theDialog->findChild<QWidget*>(u"countdownLabel"_s), nullptr);
        boxOf(theDialog)->button(QMessageBox::Ok)->click();
    });
    QCOMPARE(request.autoCloseMessageBox(QMessageBox::Warning, u"Titel"_s, u"Text"_s, {}, 0,
                                         QMessageBox::Ok, QMessageBox::Ok),
             QMessageBox::Ok);
    QCOMPARE(user.count(), 1);
}

VX_TEST_MAIN(QApplication, tst_VXRequest)

#include "tst_VXRequest.moc"
