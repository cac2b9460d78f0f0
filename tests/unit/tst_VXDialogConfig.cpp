#include <VXGUIWidgets/VXDialogConfig.h>

#include "VXTestMain.h"

#include <QtWidgets/QApplication>

class tst_VXDialogConfig : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void byDefaultThereIsNothing();
};

void tst_VXDialogConfig::byDefaultThereIsNothing()
{
    const VXDialogConfig config;
    QCOMPARE(config.headline.visible, false);
    QVERIFY(config.headline.text.isEmpty());
    QCOMPARE(config.kind, 0);
    QCOMPARE(config.standardButtons, QDialogButtonBox::StandardButtons());
    QCOMPARE(config.defaultButton, QDialogButtonBox::NoButton);
    QVERIFY(config.icon.isNull());
}

VX_TEST_MAIN(QApplication, tst_VXDialogConfig)

#include "tst_VXDialogConfig.moc"
