#include <VXGUIWidgets/VXExclusiveChoiceDialog.h>

#include <VXGUIWidgets/VXDialogDriver.h>

#include "VXDialogVisitor.h"
#include "VXTestMain.h"
#include "VXWatchedFile.h"

#include <QtWidgets/QApplication>
#include <QtWidgets/QCommandLinkButton>
#include <QtWidgets/QDialogButtonBox>
#include <QtWidgets/QLabel>
#include <QtWidgets/QPushButton>

#include <memory>

using namespace Qt::StringLiterals;

namespace {

std::unique_ptr<VXExclusiveChoiceDialog> dialog()
{
    auto dialog = std::make_unique<VXExclusiveChoiceDialog>(u"Titel"_s, u"Text<p>Frage?"_s);
    dialog->addChoice(0, u"Netz & Proxy ändern..."_s, u"Startet den Dialog"_s);
    dialog->addChoice(2, u"Noch einmal versuchen"_s, u"Führt die Aktion noch einmal durch"_s);
    return dialog;
}

QList<QCommandLinkButton*> linksOf(const QDialog& theDialog)
{
    return theDialog.findChildren<QCommandLinkButton*>();
}

class ChoosingDriver : public VXDialogDriver
{
public:
    std::optional<VXDialogAnswer> ask(const VXDialogQuestion& theQuestion) override
    {
        asked = theQuestion;
        return answer;
    }

    VXDialogAnswer answer;
    VXDialogQuestion asked;
};

} // namespace

class tst_VXExclusiveChoiceDialog : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void choicesStandInOrderWithTitleAndDescription();
    void theTextOpensNoFiles();
    void aClickChoosesAndCloses();
    void theValueZeroIsToldFromCancelled();
    void cancellingLeavesNoValue_data();
    void cancellingLeavesNoValue();
    void returnChoosesTheFirstLink();
    void downMovesToTheNextLink();
    void screenReadersHearTitleAndDescription();
    void aSecondRunForgetsTheFirstChoice();
    void theDriverChooses();
};

void tst_VXExclusiveChoiceDialog::choicesStandInOrderWithTitleAndDescription()
{
    const auto box = dialog();
    QCOMPARE(box->windowTitle(), u"Titel"_s);
    QCOMPARE(box->findChild<QLabel*>(u"messageLabel"_s)->text(), u"Text<p>Frage?"_s);
    const auto links = linksOf(*box);
    QCOMPARE(links.size(), 2);
    QCOMPARE(links.at(0)->text(), u"Netz && Proxy ändern..."_s);
    QCOMPARE(links.at(0)->description(), u"Startet den Dialog"_s);
    QCOMPARE(links.at(1)->text(), u"Noch einmal versuchen"_s);
    QCOMPARE(links.at(1)->description(), u"Führt die Aktion noch einmal durch"_s);
    const auto* buttons = box->findChild<QDialogButtonBox*>();
    QCOMPARE(buttons->buttons().size(), 1);
    QCOMPARE(buttons->button(QDialogButtonBox::Cancel)->text(), u"Abbrechen"_s);
}

void tst_VXExclusiveChoiceDialog::theTextOpensNoFiles()
{
    const VXWatchedFile file;
    VXExclusiveChoiceDialog dialog(u"Titel"_s, u"<b>Ende</b> <img src=%1>"_s.arg(file.path()));
    dialog.show();
    QVERIFY(QTest::qWaitForWindowExposed(&dialog));
    const auto* label = dialog.findChild<QLabel*>(u"messageLabel"_s);
    QCOMPARE(label->textFormat(), Qt::PlainText);
    QVERIFY2(label->text().startsWith(u"Ende "_s), qPrintable(label->text()));
    QVERIFY(!file.wasOpened());
    QVERIFY(file.open() && file.wasOpened()); // it would have been noticed
}

void tst_VXExclusiveChoiceDialog::aClickChoosesAndCloses()
{
    const auto box = dialog();
    VXDialogVisitor user([](QDialog* theDialog) { linksOf(*theDialog).at(1)->click(); });
    QCOMPARE(box->exec(), static_cast<int>(QDialog::Accepted));
    QCOMPARE(box->chosenValue(), std::optional<int>(2));
}

void tst_VXExclusiveChoiceDialog::theValueZeroIsToldFromCancelled()
{
    const auto box = dialog();
    VXDialogVisitor user([](QDialog* theDialog) { linksOf(*theDialog).at(0)->click(); });
    QCOMPARE(box->exec(), static_cast<int>(QDialog::Accepted));
    QCOMPARE(box->chosenValue(), std::optional<int>(0));
}

void tst_VXExclusiveChoiceDialog::cancellingLeavesNoValue_data()
{
    QTest::addColumn<QString>("how");

    QTest::newRow("button") << u"button"_s;
    QTest::newRow("Escape") << u"escape"_s;
    QTest::newRow("closing the window") << u"close"_s;
}

void tst_VXExclusiveChoiceDialog::cancellingLeavesNoValue()
{
    QFETCH(QString, how);

    const auto box = dialog();
    VXDialogVisitor user([&](QDialog* theDialog) {
        if (how == u"button"_s)
            theDialog->findChild<QDialogButtonBox*>()->button(QDialogButtonBox::Cancel)->click();
        else if (how == u"escape"_s)
            QTest::keyClick(theDialog, Qt::Key_Escape);
        else
            theDialog->close();
    });
    QCOMPARE(box->exec(), static_cast<int>(QDialog::Rejected));
    QVERIFY(!box->chosenValue());
}

void tst_VXExclusiveChoiceDialog::returnChoosesTheFirstLink()
{
    const auto box = dialog();
    VXDialogVisitor user([](QDialog* theDialog) { QTest::keyClick(theDialog, Qt::Key_Return); });
    box->exec();
    QCOMPARE(box->chosenValue(), std::optional<int>(0));
}

void tst_VXExclusiveChoiceDialog::downMovesToTheNextLink()
{
    const auto box = dialog();
    box->open();
    QVERIFY(QTest::qWaitForWindowActive(box.get()));
    const auto links = linksOf(*box);
    QVERIFY(links.at(0)->hasFocus());
    QTest::keyClick(links.at(0), Qt::Key_Down);
    QVERIFY(links.at(1)->hasFocus());
    QTest::keyClick(links.at(1), Qt::Key_Return);
    QCOMPARE(box->chosenValue(), std::optional<int>(2));
}

void tst_VXExclusiveChoiceDialog::screenReadersHearTitleAndDescription()
{
    const auto box = dialog();
    const auto* link = linksOf(*box).at(0);
    QCOMPARE(link->accessibleName(), u"Netz & Proxy ändern..."_s);
    QCOMPARE(link->accessibleDescription(), u"Startet den Dialog"_s);
}

void tst_VXExclusiveChoiceDialog::aSecondRunForgetsTheFirstChoice()
{
    const auto box = dialog();
    int run = 0;
    VXDialogVisitor user([&](QDialog* theDialog) {
        if (++run == 1)
            linksOf(*theDialog).at(1)->click();
        else
            theDialog->reject();
    });
    box->exec();
    box->exec();
    QVERIFY(!box->chosenValue());
}

void tst_VXExclusiveChoiceDialog::theDriverChooses()
{
    ChoosingDriver driver;
    VXDialogDriver::setCurrent(&driver);
    const auto box = dialog();

    driver.answer.choice = 2;
    QCOMPARE(box->exec(), static_cast<int>(QDialog::Accepted));
    QCOMPARE(box->chosenValue(), std::optional<int>(2));
    QCOMPARE(driver.asked.kind, VXDialogKind::Choice);
    QCOMPARE(driver.asked.choices.size(), 2);
    QCOMPARE(driver.asked.choices.at(0).title, u"Netz & Proxy ändern..."_s);

    driver.answer.choice.reset();
    QCOMPARE(box->exec(), static_cast<int>(QDialog::Rejected));
}

VX_TEST_MAIN(QApplication, tst_VXExclusiveChoiceDialog)

#include "tst_VXExclusiveChoiceDialog.moc"
