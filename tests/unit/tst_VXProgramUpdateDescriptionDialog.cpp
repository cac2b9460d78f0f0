#include <VXNetworking/VXProgramUpdateDescriptionDialog.h>

#include "VXDialogVisitor.h"
#include "VXTestMain.h"
#include "VXWebTest.h"

#include <VXGUIWidgets/VXDialogConfig.h>
#include <VXNetworking/VXRequestNetwork.h>

#include <QtCore/QMetaMethod>
#include <QtCore/QPointer>
#include <QtWebEngineWidgets/QWebEngineView>
#include <QtWidgets/QApplication>
#include <QtWidgets/QLabel>
#include <QtWidgets/QPushButton>
#include <QtWidgets/QVBoxLayout>

#include <memory>
#include <thread>

using namespace Qt::StringLiterals;

namespace {

using Dialog = VXProgramUpdateDescriptionDialog;

QPushButton* okOf(const QDialog* theDialog)
{
    return qobject_cast<const VXDialogBase*>(theDialog)->standardButton(QDialogButtonBox::Ok);
}

QPushButton* cancelOf(const QDialog* theDialog)
{
    return qobject_cast<const VXDialogBase*>(theDialog)->standardButton(QDialogButtonBox::Cancel);
}

/// What the page shows, as text.
QString pageText(const QWidget& theWidget)
{
    QString text;
    bool hasText = false;
    theWidget.findChild<QWebEngineView*>()->page()->toPlainText([&](const QString& theText) {
        text = theText;
        hasText = true;
    });
    (void)QTest::qWaitFor([&hasText] { return hasText; }, 10000);
    return text;
}

VXRequestNetwork& mediator()
{
    return *VXRequestNetwork::instance();
}

} // namespace

class tst_VXProgramUpdateDescriptionDialog : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void textsAndNames();
    void buttonsHaveTheirStyle();
    void configurationHasTwoButtons();
    void optionalUpdateHasBothButtons();
    void mandatoryUpdateHasOneButton();
    void returnPressesTheFirstButton();
    void descriptionIsShown();
    void descriptionHasItsStyle();
    void emptyDescriptionShowsAnEmptyPage();
    void contentHasNoMargins();
    void introLabelWrapsItsText();
    void pageGoesWithTheDialog();

    // the mediator
    void slotComesFirst();
    void answerIsReturnedAndWritten_data();
    void answerIsReturnedAndWritten();
    void answerNeedsNoPointer();
    void closedWindowMeansLater();
    void mandatoryUpdateCanBeClosed();
    void parentIsTheActiveModalWidget();
    void withoutModalWidgetThereIsNoParent();
    void dialogGoesAfterwards();
    void parentMayTakeItAlong();
    void workerCanAsk();
};

void tst_VXProgramUpdateDescriptionDialog::textsAndNames()
{
    const Dialog dialog(nullptr, u"<p>Neu"_s, false);
    QCOMPARE(dialog.objectName(), u"programUpdateDescriptionDialog"_s);
    QCOMPARE(dialog.windowTitle(), u"Aktualisierung gefunden"_s);
    QCOMPARE(okOf(&dialog)->text(), u"Jetzt aktualisieren"_s);
    QCOMPARE(cancelOf(&dialog)->text(), u"Später erinnern"_s);
    QCOMPARE(dialog.size(), QSize(826, 600));
}

void tst_VXProgramUpdateDescriptionDialog::buttonsHaveTheirStyle()
{
    const Dialog dialog(nullptr, {}, false);
    QCOMPARE(okOf(&dialog)->property("cssstyle").toString(), u"RegularPushButton"_s);
    QCOMPARE(cancelOf(&dialog)->property("cssstyle").toString(), u"RegularPushButton"_s);
}

void tst_VXProgramUpdateDescriptionDialog::configurationHasTwoButtons()
{
    const VXDialogConfig config = Dialog(nullptr, {}, true).createConfig();
    QCOMPARE(config.standardButtons, QDialogButtonBox::Ok | QDialogButtonBox::Cancel);
    QCOMPARE(config.defaultButton, QDialogButtonBox::Ok);
}

void tst_VXProgramUpdateDescriptionDialog::optionalUpdateHasBothButtons()
{
    Dialog dialog(nullptr, u"<p>Neu"_s, false);
    dialog.show();
    QVERIFY(okOf(&dialog)->isVisible());
    QVERIFY(cancelOf(&dialog)->isVisible());
}

void tst_VXProgramUpdateDescriptionDialog::mandatoryUpdateHasOneButton()
{
    Dialog dialog(nullptr, u"<p>Neu"_s, true);
    dialog.show();
    QVERIFY(okOf(&dialog)->isVisible());
    QVERIFY(!cancelOf(&dialog)->isVisible());
}

void tst_VXProgramUpdateDescriptionDialog::returnPressesTheFirstButton()
{
    const Dialog dialog(nullptr, {}, false);
    QVERIFY(okOf(&dialog)->isDefault());
    QVERIFY(!cancelOf(&dialog)->isDefault());
}

void tst_VXProgramUpdateDescriptionDialog::descriptionIsShown()
{
    Dialog dialog(nullptr, u"<h1>Neue Version</h1><p>Größere Bücher</p>"_s, false);
    dialog.show();
    QTRY_VERIFY(pageText(dialog).contains(u"Größere Bücher"_s));
}

void tst_VXProgramUpdateDescriptionDialog::descriptionHasItsStyle()
{
    const Dialog dialog(nullptr, {}, false);
    QCOMPARE(dialog.findChild<QWebEngineView*>()->property("cssstyle").toString(),
             u"defaultTextBrowser"_s);
}

void tst_VXProgramUpdateDescriptionDialog::emptyDescriptionShowsAnEmptyPage()
{
    Dialog dialog(nullptr, QString(), false);
    dialog.show();
    QVERIFY(QTest::qWaitForWindowExposed(&dialog));
    QCOMPARE(dialog.size(), QSize(826, 600));
    QCOMPARE(pageText(dialog), QString());
}

void tst_VXProgramUpdateDescriptionDialog::contentHasNoMargins()
{
    const Dialog dialog(nullptr, {}, false);
    auto* const layout = qobject_cast<QVBoxLayout*>(dialog.usableWidget()->layout());
    QVERIFY(layout != nullptr);
    QCOMPARE(layout->contentsMargins(), QMargins());
    QCOMPARE(layout->sizeConstraint(), QLayout::SetMinimumSize);
    QCOMPARE(layout->itemAt(0)->widget(), dialog.findChild<QWebEngineView*>());
    QCOMPARE(layout->stretch(0), 1);
}

void tst_VXProgramUpdateDescriptionDialog::introLabelWrapsItsText()
{
    Dialog dialog(nullptr, {}, false);
    auto* const label =
        qobject_cast<QLabel*>(dialog.createIntroLabel(dialog.usableWidget(), u"Was neu ist"_s));
    QVERIFY(label != nullptr);
    QCOMPARE(label->text(), u"Was neu ist"_s);
    QVERIFY(label->wordWrap());
    QCOMPARE(label->parentWidget(), dialog.usableWidget());
}

void tst_VXProgramUpdateDescriptionDialog::pageGoesWithTheDialog()
{
    QPointer<VXWebView> view;
    QPointer<QWebEngineView> native;
    {
        const Dialog dialog(nullptr, u"<p>Neu"_s, false);
        view = dialog.findChild<VXWebView*>();
        native = dialog.findChild<QWebEngineView*>();
        QVERIFY(view != nullptr);
        QVERIFY(native != nullptr);
    }
    QVERIFY(view == nullptr);
    QVERIFY(native == nullptr);
}

void tst_VXProgramUpdateDescriptionDialog::slotComesFirst()
{
    const QMetaObject& type = VXRequestNetwork::staticMetaObject;
    int slot = type.methodOffset();
    while (type.method(slot).methodType() != QMetaMethod::Slot)
        ++slot;
    QCOMPARE(type.method(slot).methodSignature(), "showProgramUpdateDialog(QString,bool,bool*)");
    QCOMPARE(type.method(slot).parameterNames(),
             (QList<QByteArray>{"theText", "isDeprecated", "doUpdate"}));
    QCOMPARE(type.method(slot).returnMetaType(), QMetaType::fromType<bool>());
}

void tst_VXProgramUpdateDescriptionDialog::answerIsReturnedAndWritten_data()
{
    QTest::addColumn<bool>("isDeprecated");
    QTest::addColumn<bool>("isNow");

    QTest::newRow("optional, now") << false << true;
    QTest::newRow("optional, later") << false << false;
    QTest::newRow("mandatory, now") << true << true;
}

void tst_VXProgramUpdateDescriptionDialog::answerIsReturnedAndWritten()
{
    QFETCH(bool, isDeprecated);
    QFETCH(bool, isNow);
    const VXDialogVisitor user([&](QDialog* theDialog) {
        QCOMPARE(theDialog->objectName(), u"programUpdateDescriptionDialog"_s);
        QVERIFY(theDialog->isModal());
        QCOMPARE(cancelOf(theDialog)->isVisible(), !isDeprecated);
        QTest::mouseClick(isNow ? okOf(theDialog) : cancelOf(theDialog), Qt::LeftButton);
    });
    bool doUpdate = !isNow;
    QCOMPARE(mediator().showProgramUpdateDialog(u"<p>Neu"_s, isDeprecated, &doUpdate), isNow);
    QCOMPARE(doUpdate, isNow);
    QCOMPARE(user.count(), 1);
}

void tst_VXProgramUpdateDescriptionDialog::answerNeedsNoPointer()
{
    const VXDialogVisitor user([](QDialog* theDialog) { theDialog->accept(); });
    QVERIFY(mediator().showProgramUpdateDialog(u"<p>Neu"_s, false, nullptr));
}

void tst_VXProgramUpdateDescriptionDialog::closedWindowMeansLater()
{
    const VXDialogVisitor user([](QDialog* theDialog) { theDialog->close(); });
    bool doUpdate = true;
    QVERIFY(!mediator().showProgramUpdateDialog(u"<p>Neu"_s, false, &doUpdate));
    QVERIFY(!doUpdate);
}

void tst_VXProgramUpdateDescriptionDialog::mandatoryUpdateCanBeClosed()
{
    const VXDialogVisitor user([](QDialog* theDialog) { theDialog->close(); });
    bool doUpdate = true;
    QVERIFY(!mediator().showProgramUpdateDialog(u"<p>Neu"_s, true, &doUpdate));
    QVERIFY(!doUpdate);
}

void tst_VXProgramUpdateDescriptionDialog::parentIsTheActiveModalWidget()
{
    QDialog modal;
    modal.setModal(true);
    modal.show();
    QCOMPARE(QApplication::activeModalWidget(), &modal);
    QPointer<QWidget> parent;
    const VXDialogVisitor user([&](QDialog* theDialog) {
        parent = theDialog->parentWidget();
        theDialog->accept();
    });
    QVERIFY(mediator().showProgramUpdateDialog(u"<p>Neu"_s, false, nullptr));
    QCOMPARE(parent, &modal);
}

void tst_VXProgramUpdateDescriptionDialog::withoutModalWidgetThereIsNoParent()
{
    QWidget window;
    window.show();
    QPointer<QWidget> parent = &window;
    const VXDialogVisitor user([&](QDialog* theDialog) {
        parent = theDialog->parentWidget();
        theDialog->accept();
    });
    QVERIFY(mediator().showProgramUpdateDialog(u"<p>Neu"_s, false, nullptr));
    QVERIFY(parent == nullptr);
}

void tst_VXProgramUpdateDescriptionDialog::dialogGoesAfterwards()
{
    QPointer<QDialog> dialog;
    const VXDialogVisitor user([&](QDialog* theDialog) {
        dialog = theDialog;
        theDialog->accept();
    });
    QVERIFY(mediator().showProgramUpdateDialog(u"<p>Neu"_s, false, nullptr));
    QVERIFY(dialog); // its deletion is scheduled, so that who is inside one of its events can end
    QVERIFY(dialog->isHidden());
    QTRY_VERIFY(!dialog);
}

void tst_VXProgramUpdateDescriptionDialog::parentMayTakeItAlong()
{
    auto modal = std::make_unique<QDialog>();
    modal->setModal(true);
    modal->show();
    const VXDialogVisitor user([&](QDialog*) { modal.reset(); });
    bool doUpdate = true;
    QVERIFY(!mediator().showProgramUpdateDialog(u"<p>Neu"_s, false, &doUpdate));
    QVERIFY(!doUpdate);
}

/// The way of the update check, which runs in a thread of its own.
void tst_VXProgramUpdateDescriptionDialog::workerCanAsk()
{
    const VXDialogVisitor user([](QDialog* theDialog) { theDialog->accept(); });
    bool doUpdate = false;
    std::atomic<bool> isDone = false;
    std::thread worker([&] {
        QMetaObject::invokeMethod(&mediator(), "showProgramUpdateDialog",
                                  Qt::BlockingQueuedConnection, Q_ARG(QString, u"<p>Neu"_s),
                                  Q_ARG(bool, true), Q_ARG(bool*, &doUpdate));
        isDone = true;
    });
    const bool hasAnswer = QTest::qWaitFor([&isDone] { return isDone.load(); }, 20000);
    worker.join();
    QVERIFY(hasAnswer);
    QVERIFY(doUpdate);
}

VX_TEST_MAIN(QApplication, tst_VXProgramUpdateDescriptionDialog)

#include "tst_VXProgramUpdateDescriptionDialog.moc"
