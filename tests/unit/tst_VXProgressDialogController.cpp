#include <VXGUIWidgets/VXProgressDialogController.h>

#include "VXTestMain.h"

#include <QtTest/QSignalSpy>
#include <QtWidgets/QApplication>
#include <QtWidgets/QDialog>
#include <QtWidgets/QLabel>
#include <QtWidgets/QProgressBar>
#include <QtWidgets/QProgressDialog>
#include <QtWidgets/QPushButton>

#include <memory>

using namespace Qt::StringLiterals;

namespace {

QProgressDialog* shownDialog()
{
    const auto widgets = QApplication::topLevelWidgets();
    for (auto* widget : widgets) {
        auto* dialog = qobject_cast<QProgressDialog*>(widget);
        if (dialog != nullptr && dialog->isVisible())
            return dialog;
    }
    return nullptr;
}

QProgressBar* shownBar()
{
    return shownDialog()->findChild<QProgressBar*>();
}

} // namespace

class tst_VXProgressDialogController : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void cleanup() { QCOMPARE(shownDialog(), nullptr); }

    void openingShowsTextAndRangeWithoutBlocking();
    void withoutARangeTheBarIsBusy();
    void stepsNeverPassTheMaximum();
    void anOpenDialogIsReused();
    void closingAClosedOneIsHarmless();
    void closingIsNoCancelling();
    void cancellingIsReported_data();
    void cancellingIsReported();
    void aCancelledOneOpensAgain();
    void itMayBeDestroyedByWhomItTells();
    void theParentMayDieFirst();
    void theDialogGoesWithItsController();
    void whatWasClosedEarlyNeverAppears();
    void theDialogSpeaksGerman();
};

void tst_VXProgressDialogController::openingShowsTextAndRangeWithoutBlocking()
{
    QDialog parent;
    parent.show();
    VXProgressDialogController progress;
    QVERIFY(!progress.isOpen());
    progress.openProgress(u"Bitte warten ..."_s, 0, 10, &parent);
    QVERIFY(progress.isOpen());
    QVERIFY(shownDialog() != nullptr);
    QCOMPARE(shownDialog()->parentWidget(), &parent);
    QCOMPARE(shownDialog()->windowModality(), Qt::WindowModal);
    QCOMPARE(shownDialog()->labelText(), u"Bitte warten ..."_s);
    QCOMPARE(shownBar()->minimum(), 0);
    QCOMPARE(shownBar()->maximum(), 10);
}

void tst_VXProgressDialogController::withoutARangeTheBarIsBusy()
{
    VXProgressDialogController progress;
    progress.openProgress(u"Text"_s, 0, 0, nullptr);
    QCOMPARE(shownBar()->maximum(), 0);
    for (int i = 0; i < 200; ++i)
        progress.increaseProgress(1);
    QVERIFY(progress.isOpen());
    QCOMPARE(shownBar()->maximum(), 0);
}

void tst_VXProgressDialogController::stepsNeverPassTheMaximum()
{
    VXProgressDialogController progress;
    progress.increaseProgress(1); // not open
    progress.openProgress(u"Text"_s, 0, 3, nullptr);
    progress.increaseProgress(2);
    QCOMPARE(shownBar()->value(), 2);
    progress.increaseProgress(2);
    QCOMPARE(shownBar()->value(), 3);
    QVERIFY(progress.isOpen()); // a full bar is not the end
}

void tst_VXProgressDialogController::anOpenDialogIsReused()
{
    VXProgressDialogController progress;
    progress.openProgress(u"Eins"_s, 0, 3, nullptr);
    const QProgressDialog* first = shownDialog();
    progress.openProgress(u"Zwei"_s, 0, 5, nullptr);
    QCOMPARE(shownDialog(), first);
    QCOMPARE(first->labelText(), u"Zwei"_s);
    QCOMPARE(shownBar()->maximum(), 5);
}

void tst_VXProgressDialogController::closingAClosedOneIsHarmless()
{
    VXProgressDialogController progress;
    progress.closeProgress(0);
    progress.openProgress(u"Text"_s, 0, 3, nullptr);
    progress.closeProgress(3);
    QVERIFY(!progress.isOpen());
    progress.closeProgress(3);
    progress.increaseProgress(1);
    QVERIFY(!progress.isOpen());
}

void tst_VXProgressDialogController::closingIsNoCancelling()
{
    VXProgressDialogController progress;
    QSignalSpy cancelled(&progress, &VXProgressDialogController::processCanceled);
    progress.openProgress(u"Text"_s, 0, 3, nullptr);
    progress.closeProgress(3);
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    QCOMPARE(cancelled.count(), 0);
}

void tst_VXProgressDialogController::cancellingIsReported_data()
{
    QTest::addColumn<QString>("how");

    QTest::newRow("button") << u"button"_s;
    QTest::newRow("Escape") << u"Escape"_s;
    QTest::newRow("window button") << u"close"_s;
}

void tst_VXProgressDialogController::cancellingIsReported()
{
    QFETCH(QString, how);

    VXProgressDialogController progress;
    bool wasOpen = true;
    connect(&progress, &VXProgressDialogController::processCanceled, this,
            [&] { wasOpen = progress.isOpen(); });
    QSignalSpy cancelled(&progress, &VXProgressDialogController::processCanceled);
    progress.openProgress(u"Text"_s, 0, 0, nullptr);
    QVERIFY(QTest::qWaitForWindowActive(shownDialog())); // Escape is a shortcut of the dialog
    if (how == u"button"_s)
        shownDialog()->findChild<QPushButton*>()->click();
    else if (how == u"Escape"_s)
        QTest::keyClick(shownDialog(), Qt::Key_Escape);
    else
        shownDialog()->close();
    QCOMPARE(cancelled.count(), 1);
    QVERIFY(!wasOpen);
    QVERIFY(!progress.isOpen());
}

void tst_VXProgressDialogController::aCancelledOneOpensAgain()
{
    VXProgressDialogController progress;
    QSignalSpy cancelled(&progress, &VXProgressDialogController::processCanceled);
    for (int i = 0; i < 2; ++i) {
        progress.openProgress(u"Text"_s, 0, 0, nullptr);
        QVERIFY(shownDialog() != nullptr);
        shownDialog()->findChild<QPushButton*>()->click();
    }
    QCOMPARE(cancelled.count(), 2);
}

void tst_VXProgressDialogController::itMayBeDestroyedByWhomItTells()
{
    auto progress = std::make_unique<VXProgressDialogController>();
    connect(progress.get(), &VXProgressDialogController::processCanceled, this,
            [&] { progress.reset(); });
    progress->openProgress(u"Text"_s, 0, 0, nullptr);
    shownDialog()->findChild<QPushButton*>()->click();
    QCOMPARE(progress.get(), nullptr);
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
}

void tst_VXProgressDialogController::theParentMayDieFirst()
{
    VXProgressDialogController progress;
    auto parent = std::make_unique<QDialog>();
    parent->show();
    progress.openProgress(u"Text"_s, 0, 0, parent.get());
    parent.reset();
    QVERIFY(!progress.isOpen());
    progress.increaseProgress(1);
    progress.closeProgress(0);
}

void tst_VXProgressDialogController::theDialogGoesWithItsController()
{
    {
        VXProgressDialogController progress;
        progress.openProgress(u"Text"_s, 0, 0, nullptr);
    }
    QCOMPARE(shownDialog(), nullptr);
}

void tst_VXProgressDialogController::whatWasClosedEarlyNeverAppears()
{
    VXProgressDialogController progress;
    progress.openProgress(u"Text"_s, 0, 0, nullptr);
    progress.closeProgress(0);
    // Qt's own timer for late dialogs would run out now.
    QCoreApplication::sendPostedEvents();
    QCoreApplication::processEvents();
    QCOMPARE(shownDialog(), nullptr);
}

void tst_VXProgressDialogController::theDialogSpeaksGerman()
{
    VXProgressDialogController progress;
    progress.openProgress(u"Text"_s, 0, 0, nullptr);
    QCOMPARE(shownDialog()->windowTitle(), u"Bitte warten"_s);
    QCOMPARE(shownDialog()->findChild<QPushButton*>()->text(), u"Abbrechen"_s);
    QCOMPARE(shownBar()->accessibleName(), u"Text"_s);
}

VX_TEST_MAIN(QApplication, tst_VXProgressDialogController)

#include "tst_VXProgressDialogController.moc"
