#include <VXCore/VXNetlinkMessage.h>

#include "VXTestMain.h"

#include <QtCore/QCoreApplication>
#include <QtCore/QRandomGenerator>

using namespace Qt::StringLiterals;

// The bytes stand as the kernel's headers define them, in the order of a little-endian computer.
class tst_VXNetlinkMessage : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void aQuestionHasTheKernelsBytes();
    void anAnswerIsRead();
    void aPaddedAttributeIsFollowedByTheNext();
    void theFlagBitsOfATypeAreIgnored();
    void brokenMessagesAreRejected_data();
    void brokenMessagesAreRejected();
    void brokenAttributesGiveNothing_data();
    void brokenAttributesGiveNothing();
    void anyBytesAreSurvived();
};

void tst_VXNetlinkMessage::aQuestionHasTheKernelsBytes()
{
    // "Which number has the family nl80211?": family 16 is the controller, command 3, attribute 2.
    VXNetlinkMessage question(16, 3);
    question.append(2, QByteArrayView("nl80211", 8));
    QCOMPARE(question.toBytes().toHex(' '), "20 00 00 00 10 00 01 00 00 00 00 00 00 00 00 00 "
                                            "03 01 00 00 0c 00 02 00 6e 6c 38 30 32 31 31 00"_ba);

    // "Get interface 5": command 5, attribute 3.
    VXNetlinkMessage interface(28, 5);
    interface.append(3, quint32(5));
    QCOMPARE(interface.toBytes().toHex(' '), "1c 00 00 00 1c 00 01 00 00 00 00 00 00 00 00 00 "
                                             "05 01 00 00 08 00 03 00 05 00 00 00"_ba);
}

void tst_VXNetlinkMessage::anAnswerIsRead()
{
    const QByteArray bytes = QByteArray::fromHex("1c000000 1c00 0000 00000000 01020000"
                                                 "07 01 0000"
                                                 "0700 3400 616263 00");
    const auto answer = VXNetlinkMessage::fromBytes(bytes);
    QVERIFY(answer);
    QCOMPARE(answer->family(), quint16(28));
    QCOMPARE(answer->command(), quint8(7));
    QCOMPARE(answer->attribute(0x34), std::optional("abc"_ba));
    QCOMPARE(answer->attribute(3), std::nullopt);
}

void tst_VXNetlinkMessage::aPaddedAttributeIsFollowedByTheNext()
{
    VXNetlinkMessage message(28, 7);
    message.append(4, QByteArrayView("wlan0", 6));
    message.append(3, quint32(0x01020304));
    message.append(52, QByteArrayView("Caf\xc3\xa9"));
    message.append(52, QByteArrayView("second"));

    const auto read = VXNetlinkMessage::fromBytes(message.toBytes());
    QVERIFY(read);
    QCOMPARE(read->attribute(4), std::optional(QByteArray("wlan0\0", 6)));
    QCOMPARE(read->attribute(3), std::optional("\x04\x03\x02\x01"_ba));
    QCOMPARE(read->attribute(52), std::optional("Caf\xc3\xa9"_ba));
}

void tst_VXNetlinkMessage::theFlagBitsOfATypeAreIgnored()
{
    // 0x8000 marks an attribute that holds others, 0x4000 one in network byte order.
    VXNetlinkMessage message(28, 7);
    message.append(0x8000 | 52, QByteArrayView("name"));
    QCOMPARE(message.attribute(52), std::optional("name"_ba));
}

void tst_VXNetlinkMessage::brokenMessagesAreRejected_data()
{
    QTest::addColumn<QByteArray>("bytes");

    QTest::newRow("nothing") << QByteArray();
    QTest::newRow("half a header") << QByteArray::fromHex("1c000000 1c00");
    QTest::newRow("header without command")
        << QByteArray::fromHex("10000000 1c000000 00000000 00000000");
    QTest::newRow("length below the header")
        << QByteArray::fromHex("04000000 1c000000 00000000 00000000 07010000");
    QTest::newRow("length beyond the bytes")
        << QByteArray::fromHex("40000000 1c000000 00000000 00000000 07010000");
    QTest::newRow("length of 4 GB")
        << QByteArray::fromHex("ffffffff 1c000000 00000000 00000000 07010000");
    QTest::newRow("error message") << QByteArray::fromHex(
        "24000000 02000000 00000000 00000000 fefffff f10000000 10000000 00000000 00000000");
    QTest::newRow("end of a list")
        << QByteArray::fromHex("14000000 03000000 00000000 00000000 00000000");
}

void tst_VXNetlinkMessage::brokenMessagesAreRejected()
{
    QFETCH(QByteArray, bytes);
    QVERIFY(!VXNetlinkMessage::fromBytes(bytes));
}

void tst_VXNetlinkMessage::brokenAttributesGiveNothing_data()
{
    QTest::addColumn<QByteArray>("attributes");

    QTest::newRow("none") << QByteArray();
    QTest::newRow("half a header") << QByteArray::fromHex("0800");
    QTest::newRow("length 0") << QByteArray::fromHex("0000 3400 616263 00");
    QTest::newRow("length 3") << QByteArray::fromHex("0300 3400 616263 00");
    QTest::newRow("longer than the message") << QByteArray::fromHex("ffff 3400 616263 00");
    QTest::newRow("after one that lies")
        << QByteArray::fromHex("4000 0300 05000000 0700 3400 61626300");
    QTest::newRow("after one without padding") << QByteArray::fromHex("0500 0300 05");
}

void tst_VXNetlinkMessage::brokenAttributesGiveNothing()
{
    QFETCH(QByteArray, attributes);

    QByteArray bytes = QByteArray::fromHex("00000000 1c000000 00000000 00000000 07010000");
    bytes.append(attributes);
    bytes[0] = static_cast<char>(bytes.size());
    const auto message = VXNetlinkMessage::fromBytes(bytes);
    QVERIFY(message);
    QCOMPARE(message->attribute(0x34), std::nullopt);
}

void tst_VXNetlinkMessage::anyBytesAreSurvived()
{
    QRandomGenerator random(20260101);
    const QByteArray good = QByteArray::fromHex("28000000 1c000000 00000000 00000000 07010000"
                                                "08000300 05000000 0a003400 616263646566 0000");
    for (int round = 0; round < 20000; ++round) {
        QByteArray bytes = good.first(random.bounded(good.size() + 1));
        for (int change = 0; change < 3 && !bytes.isEmpty(); ++change)
            bytes[random.bounded(bytes.size())] = static_cast<char>(random.bounded(256));
        const auto message = VXNetlinkMessage::fromBytes(bytes);
        if (message)
            QVERIFY(message->attribute(0x34).value_or(QByteArray()).size() < bytes.size());
    }
}

VX_TEST_MAIN(QCoreApplication, tst_VXNetlinkMessage)
#include "tst_VXNetlinkMessage.moc"
