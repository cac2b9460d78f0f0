#include <VXGUIWidgets/VXDialogBase.h>

#include <VXGUIWidgets/VXDialogConfig.h>

#include "VXTestMain.h"

#include <QtTest/QSignalSpy>
#include <QtWidgets/QApplication>
#include <QtWidgets/QLineEdit>
#include <QtWidgets/QPushButton>
#include <QtWidgets/QVBoxLayout>

using namespace Qt::StringLiterals;

namespace {

VXDialogConfig okAndCancel()
{
    VXDialogConfig config;
    config.standardButtons = QDialogButtonBox::Ok | QDialogButtonBox::Cancel;
    config.defaultButton = QDialogButtonBox::Ok;
    return config;
}

/// As an application writes one: the configuration is the subclass's own operation.
class Dialog : public VXDialogBase
{
public:
    Dialog()
    {
        setupDialog(createConfig());
        auto* layout = new QVBoxLayout(usableWidget());
        layout->addWidget(new QLineEdit(usableWidget()));
    }

    virtual VXDialogConfig createConfig() const { return okAndCancel(); }
};

} // namespace

class tst_VXDialogBase : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void aSubclassSetsItselfUp();
    void buttonsAnswer_data();
    void buttonsAnswer();
    void escapeRejects();
    void returnPressesTheDefaultButton();
    void labelsAreGerman();
    void buttonsAreRenamed();
    void aButtonIsHidden();
    void propertiesReachTheButton();
    void aMissingButtonIsHarmless();
    void withoutButtonsThereIsNoRow();
    void theKindIsReadable();
    void anotherConfigurationReplacesTheButtons();
};

void tst_VXDialogBase::aSubclassSetsItselfUp()
{
    const Dialog dialog;
    QVERIFY(dialog.usableWidget()->layout() != nullptr);
    QVERIFY(dialog.standardButton(QDialogButtonBox::Ok) != nullptr);
}

void tst_VXDialogBase::buttonsAnswer_data()
{
    QTest::addColumn<int>("button");
    QTest::addColumn<int>("result");

    QTest::newRow("OK") << int(QDialogButtonBox::Ok) << int(QDialog::Accepted);
    QTest::newRow("Cancel") << int(QDialogButtonBox::Cancel) << int(QDialog::Rejected);
}

void tst_VXDialogBase::buttonsAnswer()
{
    QFETCH(int, button);
    QFETCH(int, result);

    Dialog dialog;
    QSignalSpy finished(&dialog, &QDialog::finished);
    dialog.open();
    dialog.standardButton(static_cast<QDialogButtonBox::StandardButton>(button))->click();
    QCOMPARE(finished.count(), 1);
    QCOMPARE(finished.at(0).at(0).toInt(), result);
}

void tst_VXDialogBase::escapeRejects()
{
    Dialog dialog;
    QSignalSpy rejected(&dialog, &QDialog::rejected);
    dialog.open();
    QTest::keyClick(&dialog, Qt::Key_Escape);
    QCOMPARE(rejected.count(), 1);
}

void tst_VXDialogBase::returnPressesTheDefaultButton()
{
    Dialog dialog;
    QSignalSpy accepted(&dialog, &QDialog::accepted);
    dialog.open();
    QTest::keyClick(dialog.findChild<QLineEdit*>(), Qt::Key_Return);
    QCOMPARE(accepted.count(), 1);
}

void tst_VXDialogBase::labelsAreGerman()
{
    VXDialogBase dialog;
    VXDialogConfig config = okAndCancel();
    config.standardButtons |= QDialogButtonBox::Close;
    dialog.setupDialog(config);
    QCOMPARE(dialog.standardButton(QDialogButtonBox::Ok)->text(), u"OK"_s);
    QCOMPARE(dialog.standardButton(QDialogButtonBox::Cancel)->text(), u"Abbrechen"_s);
    QCOMPARE(dialog.standardButton(QDialogButtonBox::Close)->text(), u"Schließen"_s);
}

void tst_VXDialogBase::buttonsAreRenamed()
{
    Dialog dialog;
    dialog.renameOkButton(u"Jetzt"_s);
    dialog.renameCancelButton(u"Später"_s);
    QCOMPARE(dialog.standardButton(QDialogButtonBox::Ok)->text(), u"Jetzt"_s);
    QCOMPARE(dialog.standardButton(QDialogButtonBox::Cancel)->text(), u"Später"_s);
}

void tst_VXDialogBase::aButtonIsHidden()
{
    Dialog dialog;
    dialog.setButtonVisible(QDialogButtonBox::Cancel, false);
    dialog.open();
    QVERIFY(dialog.standardButton(QDialogButtonBox::Ok)->isVisible());
    QVERIFY(!dialog.standardButton(QDialogButtonBox::Cancel)->isVisible());
    dialog.setButtonVisible(QDialogButtonBox::Cancel, true);
    QVERIFY(dialog.standardButton(QDialogButtonBox::Cancel)->isVisible());
}

void tst_VXDialogBase::propertiesReachTheButton()
{
    qApp->setStyleSheet(u"QPushButton[cssstyle=\"wide\"] { min-width: 333px; }"_s);
    Dialog dialog;
    dialog.show(); // polished: the sheet must be looked at once more
    dialog.setPropertyToStandardButton(QDialogButtonBox::Ok, "cssstyle", u"wide"_s);
    QPushButton* ok = dialog.standardButton(QDialogButtonBox::Ok);
    QCOMPARE(ok->property("cssstyle").toString(), u"wide"_s);
    QVERIFY2(ok->minimumSizeHint().width() >= 333 || ok->minimumWidth() >= 333,
             qPrintable(QString::number(ok->minimumWidth())));
    qApp->setStyleSheet(QString());
}

void tst_VXDialogBase::aMissingButtonIsHarmless()
{
    VXDialogBase dialog;
    dialog.setupDialog(VXDialogConfig());
    dialog.renameOkButton(u"Jetzt"_s);
    dialog.setButtonVisible(QDialogButtonBox::Ok, true);
    dialog.setPropertyToStandardButton(QDialogButtonBox::Ok, "cssstyle", 1);
    QCOMPARE(dialog.standardButton(QDialogButtonBox::Ok), nullptr);
}

void tst_VXDialogBase::withoutButtonsThereIsNoRow()
{
    VXDialogBase dialog;
    dialog.setupDialog(VXDialogConfig());
    dialog.open();
    QVERIFY(!dialog.findChild<QDialogButtonBox*>()->isVisible());
}

void tst_VXDialogBase::theKindIsReadable()
{
    VXDialogBase dialog;
    VXDialogConfig config;
    config.kind = 8;
    dialog.setupDialog(config);
    QCOMPARE(dialog.property("dialogKind").toInt(), 8);
}

void tst_VXDialogBase::anotherConfigurationReplacesTheButtons()
{
    Dialog dialog;
    VXDialogConfig config;
    config.standardButtons = QDialogButtonBox::Ok;
    config.defaultButton = QDialogButtonBox::Ok;
    dialog.setupDialog(config);
    QCOMPARE(dialog.standardButton(QDialogButtonBox::Cancel), nullptr);
    QVERIFY(dialog.standardButton(QDialogButtonBox::Ok)->isDefault());
}

VX_TEST_MAIN(QApplication, tst_VXDialogBase)

#include "tst_VXDialogBase.moc"
