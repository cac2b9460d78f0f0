#include <VXGUIWidgets/VXDialog.h>

#include <VXGUIWidgets/VXDialogConfig.h>

#include "VXTestMain.h"

#include <QtWidgets/QApplication>
#include <QtWidgets/QLabel>
#include <QtWidgets/QPushButton>

using namespace Qt::StringLiterals;

namespace {

QLabel* headlineOf(const VXDialog& theDialog)
{
    return theDialog.findChild<QLabel*>(u"headlineLabel"_s);
}

} // namespace

class tst_VXDialog : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void theDefaultHeadlineIsHidden();
    void aVisibleHeadlineStandsAboveTheMainArea();
    void theMainAreaTakesTheRoom();
    void theButtonsAreTheConfigured();
};

void tst_VXDialog::theDefaultHeadlineIsHidden()
{
    VXDialog dialog;
    dialog.setupDialog(VXDialogConfig());
    dialog.show();
    QVERIFY(!headlineOf(dialog)->isVisible());
    QVERIFY(dialog.mainArea()->isVisible());
}

void tst_VXDialog::aVisibleHeadlineStandsAboveTheMainArea()
{
    VXDialog dialog;
    VXDialogConfig config;
    config.headline = {u"Ihre Rechnung"_s, true};
    dialog.setupDialog(config);
    dialog.resize(400, 300);
    dialog.show();
    QVERIFY(headlineOf(dialog)->isVisible());
    QCOMPARE(headlineOf(dialog)->text(), u"Ihre Rechnung"_s);
    QVERIFY(headlineOf(dialog)->geometry().bottom() < dialog.mainArea()->geometry().top());
}

void tst_VXDialog::theMainAreaTakesTheRoom()
{
    VXDialog dialog;
    VXDialogConfig config;
    config.standardButtons = QDialogButtonBox::Ok;
    dialog.setupDialog(config);
    dialog.resize(400, 300);
    dialog.show();
    const int before = dialog.mainArea()->height();
    dialog.resize(400, 500);
    QApplication::processEvents();
    QCOMPARE(dialog.mainArea()->height(), before + 200);
}

void tst_VXDialog::theButtonsAreTheConfigured()
{
    VXDialog dialog;
    VXDialogConfig config;
    config.standardButtons = QDialogButtonBox::Ok;
    config.defaultButton = QDialogButtonBox::Ok;
    dialog.setupDialog(config);
    QVERIFY(dialog.standardButton(QDialogButtonBox::Ok)->isDefault());
    QCOMPARE(dialog.standardButton(QDialogButtonBox::Cancel), nullptr);
}

VX_TEST_MAIN(QApplication, tst_VXDialog)

#include "tst_VXDialog.moc"
