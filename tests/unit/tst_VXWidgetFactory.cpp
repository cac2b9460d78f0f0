#include <VXGUIWidgets/VXWidgetFactory.h>

#include "VXTestMain.h"

#include <QtGui/QClipboard>
#include <QtWidgets/QApplication>

using namespace Qt::StringLiterals;

class tst_VXWidgetFactory : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void anOrdinaryEditBelongsToItsParent();
    void aPasswordEditGivesNothingOut();
};

void tst_VXWidgetFactory::anOrdinaryEditBelongsToItsParent()
{
    QWidget parent;
    const QLineEdit* edit = VXWidgetFactory::createLineEdit(&parent);
    QCOMPARE(edit->parentWidget(), &parent);
    QCOMPARE(edit->echoMode(), QLineEdit::Normal);
    QCOMPARE(edit->contextMenuPolicy(), Qt::DefaultContextMenu);
}

void tst_VXWidgetFactory::aPasswordEditGivesNothingOut()
{
    QWidget parent;
    QLineEdit* edit = VXWidgetFactory::createLineEdit(&parent, QLineEdit::Password);
    edit->setText(u"geheim"_s);
    QApplication::clipboard()->setText(u"vorher"_s);
    edit->selectAll();
    edit->copy();
    QCOMPARE(QApplication::clipboard()->text(), u"vorher"_s);
    QCOMPARE(edit->contextMenuPolicy(), Qt::NoContextMenu);
    QVERIFY(!edit->dragEnabled());
    QVERIFY(edit->inputMethodHints().testFlag(Qt::ImhHiddenText));
}

VX_TEST_MAIN(QApplication, tst_VXWidgetFactory)

#include "tst_VXWidgetFactory.moc"
