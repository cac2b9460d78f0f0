#include <VXGUIWidgets/VXPasswordDialog.h>

#include <VXGUIWidgets/VXDialogDriver.h>

#include "VXDialogVisitor.h"
#include "VXTestMain.h"
#include "VXWatchedFile.h"

#include <QtWidgets/QApplication>
#include <QtWidgets/QCheckBox>
#include <QtWidgets/QDialogButtonBox>
#include <QtWidgets/QLabel>
#include <QtWidgets/QLineEdit>
#include <QtWidgets/QPushButton>

using namespace Qt::StringLiterals;

namespace {

QLineEdit* editOf(const QDialog& theDialog, const QString& theName)
{
    return theDialog.findChild<QLineEdit*>(theName);
}

class PasswordDriver : public VXDialogDriver
{
public:
    std::optional<VXDialogAnswer> ask(const VXDialogQuestion& theQuestion) override
    {
        text = theQuestion.text;
        return answer;
    }

    VXDialogAnswer answer;
    QString text;
};

} // namespace

class tst_VXPasswordDialog : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void cleanup() { VXDialogDriver::setCurrent(nullptr); }

    void showsTextAndLabels();
    void theTextOpensNoFiles();
    void thePasswordIsHiddenUntilAskedFor();
    void okGivesWhatWasTyped();
    void emptyFieldsCanBeAccepted();
    void cancellingWipesThePassword_data();
    void cancellingWipesThePassword();
    void returnInThePasswordAccepts();
    void aKnownUserMovesTheFocusToThePassword();
    void theDriverAnswers();
};

void tst_VXPasswordDialog::showsTextAndLabels()
{
    VXPasswordDialog dialog(u"Für die URL<br>..."_s);
    QCOMPARE(dialog.windowTitle(), u"Anmeldung erforderlich"_s);
    QCOMPARE(dialog.findChild<QLabel*>(u"messageLabel"_s)->text(), u"Für die URL<br>..."_s);
    QStringList labels;
    const auto all = dialog.findChildren<QLabel*>();
    for (const auto* label : all) {
        if (label->buddy() != nullptr)
            labels << label->text();
    }
    QCOMPARE(labels, (QStringList{u"&Benutzername"_s, u"&Passwort"_s}));
    const auto* buttons = dialog.findChild<QDialogButtonBox*>();
    QCOMPARE(buttons->button(QDialogButtonBox::Ok)->text(), u"OK"_s);
    QCOMPARE(buttons->button(QDialogButtonBox::Cancel)->text(), u"Abbrechen"_s);
}

void tst_VXPasswordDialog::theTextOpensNoFiles()
{
    const VXWatchedFile file;
    VXPasswordDialog dialog(u"<b>Ende</b> <img src=%1>"_s.arg(file.path()));
    dialog.show();
    QVERIFY(QTest::qWaitForWindowExposed(&dialog));
    const auto* label = dialog.findChild<QLabel*>(u"messageLabel"_s);
    QCOMPARE(label->textFormat(), Qt::PlainText);
    QVERIFY2(label->text().startsWith(u"Ende "_s), qPrintable(label->text()));
    QVERIFY(!file.wasOpened());
    QVERIFY(file.open() && file.wasOpened()); // it would have been noticed
}

void tst_VXPasswordDialog::thePasswordIsHiddenUntilAskedFor()
{
    VXPasswordDialog dialog(u"Text"_s);
    auto* password = editOf(dialog, u"passwordEdit"_s);
    QCOMPARE(password->echoMode(), QLineEdit::Password);
    QVERIFY(password->inputMethodHints().testFlag(Qt::ImhHiddenText));
    auto* show = dialog.findChild<QCheckBox*>();
    show->click();
    QCOMPARE(password->echoMode(), QLineEdit::Normal);
    show->click();
    QCOMPARE(password->echoMode(), QLineEdit::Password);
}

void tst_VXPasswordDialog::okGivesWhatWasTyped()
{
    VXPasswordDialog dialog(u"Text"_s);
    VXDialogVisitor user([](QDialog* theDialog) {
        QTest::keyClicks(editOf(*theDialog, u"userNameEdit"_s), u"karl"_s);
        QTest::keyClicks(editOf(*theDialog, u"passwordEdit"_s), u"a+b %41"_s);
        theDialog->findChild<QDialogButtonBox*>()->button(QDialogButtonBox::Ok)->click();
    });
    QCOMPARE(dialog.exec(), static_cast<int>(QDialog::Accepted));
    QCOMPARE(dialog.userName(), u"karl"_s);
    QCOMPARE(dialog.password(), u"a+b %41"_s);
}

void tst_VXPasswordDialog::emptyFieldsCanBeAccepted()
{
    VXPasswordDialog dialog(u"Text"_s);
    auto* ok = dialog.findChild<QDialogButtonBox*>()->button(QDialogButtonBox::Ok);
    QVERIFY(ok->isEnabled());
    dialog.open();
    ok->click();
    QCOMPARE(dialog.result(), static_cast<int>(QDialog::Accepted));
}

void tst_VXPasswordDialog::cancellingWipesThePassword_data()
{
    QTest::addColumn<bool>("byEscape");

    QTest::newRow("button") << false;
    QTest::newRow("Escape") << true;
}

void tst_VXPasswordDialog::cancellingWipesThePassword()
{
    QFETCH(bool, byEscape);

    VXPasswordDialog dialog(u"Text"_s);
    VXDialogVisitor user([byEscape](QDialog* theDialog) {
        QTest::keyClicks(editOf(*theDialog, u"passwordEdit"_s), u"geheim"_s);
        if (byEscape)
            QTest::keyClick(theDialog, Qt::Key_Escape);
        else
            theDialog->findChild<QDialogButtonBox*>()->button(QDialogButtonBox::Cancel)->click();
    });
    QCOMPARE(dialog.exec(), static_cast<int>(QDialog::Rejected));
    QVERIFY(dialog.password().isEmpty());
}

void tst_VXPasswordDialog::returnInThePasswordAccepts()
{
    VXPasswordDialog dialog(u"Text"_s);
    dialog.open();
    QTest::keyClick(editOf(dialog, u"passwordEdit"_s), Qt::Key_Return);
    QCOMPARE(dialog.result(), static_cast<int>(QDialog::Accepted));
}

void tst_VXPasswordDialog::aKnownUserMovesTheFocusToThePassword()
{
    VXPasswordDialog dialog(u"Text"_s);
    dialog.setUserName(u"karl"_s);
    dialog.open();
    QVERIFY(QTest::qWaitForWindowActive(&dialog));
    QVERIFY(editOf(dialog, u"passwordEdit"_s)->hasFocus());
    QCOMPARE(dialog.userName(), u"karl"_s);
}

void tst_VXPasswordDialog::theDriverAnswers()
{
    PasswordDriver driver;
    VXDialogDriver::setCurrent(&driver);
    VXPasswordDialog dialog(u"Text"_s);

    driver.answer = {QMessageBox::Ok, {}, u"karl"_s, u"geheim"_s};
    QCOMPARE(dialog.exec(), static_cast<int>(QDialog::Accepted));
    QCOMPARE(dialog.userName(), u"karl"_s);
    QCOMPARE(dialog.password(), u"geheim"_s);
    QCOMPARE(driver.text, u"Text"_s);

    driver.answer.button = QMessageBox::Cancel;
    QCOMPARE(dialog.exec(), static_cast<int>(QDialog::Rejected));
}

VX_TEST_MAIN(QApplication, tst_VXPasswordDialog)

#include "tst_VXPasswordDialog.moc"
