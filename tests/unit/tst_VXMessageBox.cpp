#include <VXGUIWidgets/VXMessageBox.h>

#include <VXGUIWidgets/VXAutoCloseMessageBox.h>
#include <VXGUIWidgets/VXDialogQuestion.h>

#include "VXTestMain.h"
#include "VXWatchedFile.h"

#include <QtGui/QClipboard>
#include <QtWidgets/QApplication>
#include <QtWidgets/QDialog>
#include <QtWidgets/QLabel>
#include <QtWidgets/QPushButton>
#include <QtWidgets/QTextEdit>

#include <memory>

using namespace Qt::StringLiterals;

namespace {

VXDialogQuestion question()
{
    VXDialogQuestion question;
    question.icon = QMessageBox::Critical;
    question.title = u"Ein Fehler"_s;
    question.text = u"Ungültige <b>Session</b> ID.<br>"_s;
    question.details = u"Fehlercode: 4"_s;
    question.buttons = QMessageBox::Cancel;
    return question;
}

QAbstractButton* detailsButton(const QMessageBox& theBox)
{
    const auto buttons = theBox.buttons();
    for (QAbstractButton* button : buttons) {
        if (theBox.buttonRole(button) == QMessageBox::ActionRole)
            return button;
    }
    return nullptr;
}

} // namespace

class tst_VXMessageBox : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void buttonsSpeakGerman_data();
    void buttonsSpeakGerman();
    void theDetailsAreClosedAtFirstAndOpenByTheirButton();
    void aButtonThatStandsAloneIsTheDefault();
    void theOrderedDefaultCounts();
    void theTextOpensNoLinks();
    void theTextOpensNoFiles_data();
    void theTextOpensNoFiles();
    void copyingTakesTitleTextAndDetails();
    void theBoxBelongsToTheActiveModalWidget();
};

void tst_VXMessageBox::buttonsSpeakGerman_data()
{
    QTest::addColumn<int>("button");
    QTest::addColumn<QString>("text");

    QTest::newRow("OK") << int(QMessageBox::Ok) << u"OK"_s;
    QTest::newRow("Retry") << int(QMessageBox::Retry) << u"Wiederholen"_s;
    QTest::newRow("Cancel") << int(QMessageBox::Cancel) << u"Abbrechen"_s;
    QTest::newRow("Yes") << int(QMessageBox::Yes) << u"Ja"_s;
    QTest::newRow("No") << int(QMessageBox::No) << u"Nein"_s;
    QTest::newRow("Close") << int(QMessageBox::Close) << u"Schließen"_s;
}

void tst_VXMessageBox::buttonsSpeakGerman()
{
    QFETCH(int, button);
    QFETCH(QString, text);

    VXDialogQuestion asked = question();
    const auto standardButton = static_cast<QMessageBox::StandardButton>(button);
    asked.buttons = standardButton;
    const VXMessageBox box(asked);
    QCOMPARE(box.button(standardButton)->text(), text);
    QCOMPARE(VXMessageBox::buttonText(standardButton), text);
}

void tst_VXMessageBox::theDetailsAreClosedAtFirstAndOpenByTheirButton()
{
    VXMessageBox box(question());
    box.open();
    QVERIFY(!box.findChild<QTextEdit*>()->isVisible());
    QCOMPARE(detailsButton(box)->text(), u"Details anzeigen"_s);
    detailsButton(box)->click();
    QVERIFY(box.findChild<QTextEdit*>()->isVisible());
    QVERIFY(box.findChild<QTextEdit*>()->isReadOnly());
    QTRY_COMPARE(detailsButton(box)->text(), u"Details verbergen"_s);
    detailsButton(box)->click();
    QTRY_COMPARE(detailsButton(box)->text(), u"Details anzeigen"_s);
}

void tst_VXMessageBox::aButtonThatStandsAloneIsTheDefault()
{
    VXMessageBox box(question());
    box.open();
    QCOMPARE(box.defaultButton(), box.button(QMessageBox::Cancel));
    QTest::keyClick(&box, Qt::Key_Return);
    QVERIFY(!box.isVisible());
}

void tst_VXMessageBox::theOrderedDefaultCounts()
{
    VXDialogQuestion asked = question();
    asked.buttons = QMessageBox::Yes | QMessageBox::No;
    asked.defaultButton = QMessageBox::No;
    const VXMessageBox box(asked);
    QCOMPARE(box.defaultButton(), box.button(QMessageBox::No));
}

void tst_VXMessageBox::theTextOpensNoLinks()
{
    VXDialogQuestion asked = question();
    asked.text = u"<a href=\"http://fremd.test/\">hier</a>"_s;
    const VXMessageBox box(asked);
    const auto* label = box.findChild<QLabel*>(u"qt_msgbox_label"_s);
    QVERIFY(!label->textInteractionFlags().testFlag(Qt::LinksAccessibleByMouse));
    QVERIFY(label->textInteractionFlags().testFlag(Qt::TextSelectableByMouse));
}

void tst_VXMessageBox::theTextOpensNoFiles_data()
{
    QTest::addColumn<QString>("text"); // FILE stands for one that is there
    QTest::addColumn<int>("seconds");  // of a box that closes by itself

    QTest::newRow("picture") << u"<b>Ende</b> <img src=FILE>"_s << 0;
    QTest::newRow("by address") << u"<b>Ende</b> <img src=file://FILE>"_s << 0;
    QTest::newRow("tag written oddly") << u"<b>Ende</b> <&#105;mg src=FILE>"_s << 0;
    QTest::newRow("background") << u"<b>Ende</b><table background=FILE><tr><td></table>"_s << 0;
    QTest::newRow("style sheet") << u"<style>@import \"FILE\";</style><b>Ende</b>"_s << 0;
    QTest::newRow("closes by itself") << u"<b>Ende</b> <img src=FILE>"_s << 60;
}

void tst_VXMessageBox::theTextOpensNoFiles()
{
    QFETCH(QString, text);
    QFETCH(int, seconds);

    const VXWatchedFile file;
    VXDialogQuestion asked = question();
    asked.text = text.replace(u"FILE"_s, file.path());
    asked.seconds = seconds;
    const std::unique_ptr<VXMessageBox> box(seconds > 0 ? new VXAutoCloseMessageBox(asked)
                                                        : new VXMessageBox(asked));
    box->show();
    QVERIFY(QTest::qWaitForWindowExposed(box.get()));
    QVERIFY2(box->text().contains(u"Ende"_s), qPrintable(box->text()));
    QCOMPARE(box->textFormat(), Qt::PlainText);
    QVERIFY(!file.wasOpened());
    QVERIFY(file.open() && file.wasOpened()); // it would have been noticed
}

void tst_VXMessageBox::copyingTakesTitleTextAndDetails()
{
    VXMessageBox box(question());
    box.open();
    QTest::keySequence(&box, QKeySequence::Copy);
    QCOMPARE(QApplication::clipboard()->text().simplified(),
             u"Ein Fehler Ungültige Session ID. Fehlercode: 4"_s);
}

void tst_VXMessageBox::theBoxBelongsToTheActiveModalWidget()
{
    QDialog dialog;
    dialog.open();
    const VXMessageBox box(question());
    QCOMPARE(box.parentWidget(), &dialog);
}

VX_TEST_MAIN(QApplication, tst_VXMessageBox)

#include "tst_VXMessageBox.moc"
