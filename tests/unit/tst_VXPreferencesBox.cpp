#include <VXGUIWidgets/VXPreferencesBox.h>

#include "VXTestMain.h"

#include <QtWidgets/QApplication>

using namespace Qt::StringLiterals;

class tst_VXPreferencesBox : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void theTitleIsShown();
    void aPageMayBeLeftUnlessItSaysOtherwise();
};

void tst_VXPreferencesBox::theTitleIsShown()
{
    const VXPreferencesBox page(u"Proxy Einstellungen"_s);
    QCOMPARE(page.title(), u"Proxy Einstellungen"_s);
}

void tst_VXPreferencesBox::aPageMayBeLeftUnlessItSaysOtherwise()
{
    VXPreferencesBox page(u"Titel"_s);
    QVERIFY(page.checkLeaveCondition());
}

VX_TEST_MAIN(QApplication, tst_VXPreferencesBox)

#include "tst_VXPreferencesBox.moc"
