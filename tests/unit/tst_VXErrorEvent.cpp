#include <VXCore/VXErrorEvent.h>

#include "VXTestMain.h"

#include <QtCore/QCoreApplication>

using namespace Qt::StringLiterals;

class tst_VXErrorEvent : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void keepsWhatItWasMadeOf();
    void typesBeyondSixteenBitsStayWhole();
};

void tst_VXErrorEvent::keepsWhatItWasMadeOf()
{
    const VXErrorEvent event(7, u"Kein Netz"_s, 5005);
    QCOMPARE(event.type(), 7);
    QCOMPARE(event.message(), u"Kein Netz"_s);
    QCOMPARE(event.internalErrorCode(), 5005);
}

void tst_VXErrorEvent::typesBeyondSixteenBitsStayWhole()
{
    QCOMPARE(VXErrorEvent(0x40000, {}, 0).type(), 262144);
    QCOMPARE(VXErrorEvent::NetworkError, 0x40000);
}

VX_TEST_MAIN(QCoreApplication, tst_VXErrorEvent)

#include "tst_VXErrorEvent.moc"
