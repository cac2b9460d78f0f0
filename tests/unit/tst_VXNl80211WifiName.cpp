#include <VXCore/VXNetlinkMessage.h>
#include <VXCore/VXNl80211WifiName.h>

#include "VXTestMain.h"

#include <QtCore/QCoreApplication>

#include <optional>

using namespace Qt::StringLiterals;

/// The kernel's answers are composed from its header definitions; a real radio is not needed.
class tst_VXNl80211WifiName : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void theNameIsReadFromTheKernelsAnswer();
    void anAnswerWithoutNameMeansNotJoined();
    void anUnknownInterfaceGivesNothing();
    void aWiredInterfaceGivesNothing();
    void aNameLongerThanAnyInterfaceGivesNothing();
};

void tst_VXNl80211WifiName::theNameIsReadFromTheKernelsAnswer()
{
    // New interface (7): interface number (3), its name (4), kind "station" (5), SSID (52).
    VXNetlinkMessage answer(28, 7);
    answer.append(3, quint32(3));
    answer.append(4, QByteArrayView("wlan0", 6));
    answer.append(5, quint32(2));
    answer.append(52, QByteArrayView("Caf\xc3\xa9"));
    QCOMPARE(VXNl80211WifiName::nameIn(answer), u"Caf\u00e9"_s);
}

void tst_VXNl80211WifiName::anAnswerWithoutNameMeansNotJoined()
{
    VXNetlinkMessage answer(28, 7);
    answer.append(3, quint32(3));
    QCOMPARE(VXNl80211WifiName::nameIn(answer), QString());
}

void tst_VXNl80211WifiName::anUnknownInterfaceGivesNothing()
{
    QCOMPARE(VXNl80211WifiName().wifiName(u"nosuch0"_s), std::nullopt);
    QCOMPARE(VXNl80211WifiName().wifiName(QString()), std::nullopt);
}

void tst_VXNl80211WifiName::aWiredInterfaceGivesNothing()
{
    QCOMPARE(VXNl80211WifiName().wifiName(u"lo"_s), std::nullopt);
}

void tst_VXNl80211WifiName::aNameLongerThanAnyInterfaceGivesNothing()
{
    QCOMPARE(VXNl80211WifiName().wifiName(QString(5000, u'w')), std::nullopt);
}

VX_TEST_MAIN(QCoreApplication, tst_VXNl80211WifiName)
#include "tst_VXNl80211WifiName.moc"
