#include <VXCore/VXDeploymentConfig.h>
#include <VXCore/VXStringHelper.h>

#include "VXTestMain.h"

#include <QtCore/QCoreApplication>
#include <QtCore/QElapsedTimer>
#include <QtCore/QRandomGenerator>

#include <array>

using namespace Qt::StringLiterals;

class tst_VXStringHelper : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void secretsAreMasked_data();
    void secretsAreMasked();
    void theRestIsKept_data();
    void theRestIsKept();
    void deploymentAddsNames();
    void effortGrowsWithTheLengthOnly_data();
    void effortGrowsWithTheLengthOnly();
    void anyTextIsTaken();
};

void tst_VXStringHelper::secretsAreMasked_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("masked");

    for (const char* name :
         {"password", "pwd", "client_secret", "refresh_token", "access_token", "id_token", "token",
          "code", "code_verifier", "Authorization", "PASSWORD", "Token"}) {
        const QString key = QString::fromLatin1(name);
        QTest::addRow("form, %s", name)
            << u"a=1&"_s + key + u"=s%20ecret&b=2"_s << u"a=1&"_s + key + u"=***&b=2"_s;
        QTest::addRow("JSON, %s", name) << u"{\"a\":1,\""_s + key + u"\":\"s3cret\",\"b\":2}"_s
                                        << u"{\"a\":1,\""_s + key + u"\":\"***\",\"b\":2}"_s;
        QTest::addRow("XML, %s", name)
            << u"<a>1</a><"_s + key + u">s3cret</"_s + key + u"><b>2</b>"_s
            << u"<a>1</a><"_s + key + u">***</"_s + key + u"><b>2</b>"_s;
        QTest::addRow("attribute, %s", name) << u"<a "_s + key + u"=\"s3cret\" b=\"2\"/>"_s
                                             << u"<a "_s + key + u"=\"***\" b=\"2\"/>"_s;
    }
    QTest::newRow("form, first and last")
        << u"code=1&grant_type=x&password=p"_s << u"code=***&grant_type=x&password=***"_s;
    QTest::newRow("form, equals sign in the value") << u"token=a=b==&x=1"_s << u"token=***&x=1"_s;
    QTest::newRow("form, raw blank and umlaut") << u"password=ä b&x=1"_s << u"password=***&x=1"_s;
    QTest::newRow("URL") << u"GET http://h/p?code=1&x=2 end"_s
                         << u"GET http://h/p?code=***&x=2 end"_s;
    QTest::newRow("form, next line is kept") << u"pwd=a\nx=1"_s << u"pwd=***\nx=1"_s;
    QTest::newRow("JSON, blanks") << u"{ \"token\" : \"a\" }"_s << u"{ \"token\" : \"***\" }"_s;
    QTest::newRow("JSON, escaped quotation mark")
        << uR"({"password":"a\"b","x":"y"})"_s << uR"({"password":"***","x":"y"})"_s;
    QTest::newRow("JSON, escaped backslash")
        << uR"({"password":"a\\","x":"y"})"_s << uR"({"password":"***","x":"y"})"_s;
    QTest::newRow("JSON, number") << uR"({"code":1234,"x":1})"_s << uR"({"code":***,"x":1})"_s;
    QTest::newRow("JSON, list") << uR"({"token":["a","b]"],"x":1})"_s
                                << uR"({"token":[***],"x":1})"_s;
    QTest::newRow("JSON, member of an object") << uR"({"token":{"access_token":"a","x":1}})"_s
                                               << uR"({"token":{"access_token":"***","x":1}})"_s;
    QTest::newRow("JSON, broken off") << uR"({"password":"abc)"_s << uR"({"password":"***)"_s;
    QTest::newRow("quoted JSON") << uR"(body: "{\"token\" : \"a\",\"x\":1}" end)"_s
                                 << uR"(body: "{\"token\" : \"***\",\"x\":1}" end)"_s;
    QTest::newRow("quoted JSON, escapes of its own")
        << uR"("{\"token\":\"a\\\"b\\\\\",\"x\":\"y\"}")"_s
        << uR"("{\"token\":\"***\",\"x\":\"y\"}")"_s;
    QTest::newRow("quoted JSON, number")
        << uR"("{\"code\":12,\"x\":1}")"_s << uR"("{\"code\":***,\"x\":1}")"_s;
    QTest::newRow("quoted JSON, number before the end")
        << uR"("{\"code\":12" x)"_s << uR"("{\"code\":***" x)"_s;
    QTest::newRow("quoted JSON, list")
        << uR"("{\"token\":[\"a\",\"b\"],\"x\":1}" end)"_s << uR"("{\"token\":***" end)"_s;
    QTest::newRow("quoted JSON, member of an object")
        << uR"("{\"token\":{\"code\":\"a\"}}")"_s << uR"("{\"token\":{\"code\":\"***\"}}")"_s;
    QTest::newRow("quoted attribute")
        << uR"("<a pwd=\"a b\" x=\"1\">")"_s << uR"("<a pwd=\"***\" x=\"1\">")"_s;
    QTest::newRow("quoted JSON, broken off") << uR"("{\"pwd\":\"abc)"_s << uR"("{\"pwd\":\"***)"_s;
    QTest::newRow("quoted JSON, text cut off")
        << uR"("{\"pwd\":\"abc" x)"_s << uR"("{\"pwd\":\"***" x)"_s;
    QTest::newRow("quoted JSON, backslash at the end")
        << uR"("{\"pwd\":\"abc\\)"_s << uR"("{\"pwd\":\"***)"_s;
    QTest::newRow("XML, prefix") << u"<x:password>a</x:password>"_s
                                 << u"<x:password>***</x:password>"_s;
    QTest::newRow("XML, attributes")
        << u"<password type=\"a>b\">s</password>"_s << u"<password type=\"a>b\">***</password>"_s;
    QTest::newRow("element whose tag never ends")
        << u"<a/><password type=\"a>s</password></a>"_s << u"<a/><password***"_s;
    QTest::newRow("element without a value at the end") << u"<password>"_s << u"<password>"_s;
    QTest::newRow("XML, CDATA") << u"<pwd><![CDATA[a<b]]></pwd><x/>"_s << u"<pwd>***</pwd><x/>"_s;
    QTest::newRow("XML, broken off") << u"<pwd>abc"_s << u"<pwd>***"_s;
    QTest::newRow("XML, other end tag inside") << u"<pwd>a</x>b</pwd>"_s << u"<pwd>***</pwd>"_s;
    QTest::newRow("header") << u"Authorization: Bearer abc\r\nHost: h"_s
                            << u"Authorization: ***\r\nHost: h"_s;
    QTest::newRow("header of a proxy")
        << u"Proxy-Authorization: Basic abc"_s << u"Proxy-Authorization: ***"_s;
    QTest::newRow("several") << u"token=a&token=b"_s << u"token=***&token=***"_s;
}

void tst_VXStringHelper::secretsAreMasked()
{
    QFETCH(QString, text);
    QFETCH(QString, masked);
    QCOMPARE(VXStringHelper::hidePasswords(text), masked);
}

void tst_VXStringHelper::theRestIsKept_data()
{
    QTest::addColumn<QString>("text");

    QTest::newRow("empty") << u""_s;
    QTest::newRow("plain") << u"Hallo Welt"_s;
    QTest::newRow("other names") << u"user=u&errorcode=70&my_password_hint=x&codes=1"_s;
    QTest::newRow("element with a longer name") << u"<errorcode>70</errorcode>"_s;
    QTest::newRow("word without value") << u"the password is wrong, code 70"_s;
    QTest::newRow("empty values") << uR"(password=&x=1 {"token":""} <pwd></pwd>)"_s;
    QTest::newRow("empty element") << u"<token/><x>1</x>"_s;
    QTest::newRow("emoji") << u"😀=😀&ä=ö"_s;
    QTest::newRow("NUL") << u"a\0b"_s;
}

void tst_VXStringHelper::theRestIsKept()
{
    QFETCH(QString, text);
    QCOMPARE(VXStringHelper::hidePasswords(text), text);
}

void tst_VXStringHelper::deploymentAddsNames()
{
    VXDeploymentConfig* deployment = VXDeploymentConfig::instance();
    QCOMPARE(VXStringHelper::hidePasswords(u"pin=1&X-Api-Key: k"_s), u"pin=1&X-Api-Key: k"_s);
    QVERIFY(deployment->setList(u"Log/maskedNames"_s, {u"PIN"_s, u"x-api-key"_s}));
    QCOMPARE(VXStringHelper::hidePasswords(u"pin=1&x-api-key=k&token=t"_s),
             u"pin=***&x-api-key=***&token=***"_s);
    QVERIFY(deployment->setList(u"Log/maskedNames"_s, {}));
}

void tst_VXStringHelper::effortGrowsWithTheLengthOnly_data()
{
    QTest::addColumn<QString>("piece");

    QTest::newRow("letters") << u"a"_s;
    QTest::newRow("dashes") << u"-"_s;
    QTest::newRow("names") << u"token"_s;
    QTest::newRow("names and blanks") << u"token    "_s;
    QTest::newRow("blanks after a name") << u"token"_s + QString(200, u' ');
    QTest::newRow("values") << u"token=a&"_s;
    QTest::newRow("empty elements") << u"<token>"_s;
    QTest::newRow("elements with an open quotation mark") << u"<token a=\""_s;
    QTest::newRow("element and foreign ends") << u"<token></x"_s;
    QTest::newRow("elements and ends with prefixes") << u"<a:token></b:c"_s;
    QTest::newRow("JSON lists") << u"\"token\":["_s;
    QTest::newRow("JSON texts") << u"\"token\":\""_s;
    QTest::newRow("quoted JSON lists") << u"\"token\\\":["_s;
    QTest::newRow("quoted JSON texts") << u"\"token\\\":\\\""_s;
    QTest::newRow("backslashes") << u"\"token\":\"\\"_s;
}

// A million characters. What grows with the square of the length takes minutes, this milliseconds.
void tst_VXStringHelper::effortGrowsWithTheLengthOnly()
{
    QFETCH(QString, piece);
    const QString text = piece.repeated(1000000 / piece.size());
    QElapsedTimer timer;
    timer.start();
    QVERIFY(!VXStringHelper::hidePasswords(text).isNull());
    QVERIFY2(timer.elapsed() < 20000, qPrintable(QString::number(timer.elapsed())));
}

void tst_VXStringHelper::anyTextIsTaken()
{
    static const std::array pieces{u"token"_s, u"password"_s, u"="_s,        u"\""_s,     u"'"_s,
                                   u":"_s,     u"<"_s,        u">"_s,        u"/"_s,      u"["_s,
                                   u"]"_s,     u"{"_s,        u"\\"_s,       u" "_s,      u"&"_s,
                                   u"\n"_s,    u"a"_s,        u"</token>"_s, u"<token>"_s};
    QRandomGenerator random(20261121);
    for (int round = 0; round < 5000; ++round) {
        QString text;
        for (int count = random.bounded(30); count > 0; --count)
            text += pieces.at(static_cast<size_t>(random.bounded(int(pieces.size()))));
        const QString masked = VXStringHelper::hidePasswords(text);
        QVERIFY2(masked.size() <= text.size() * 4 + 3, qPrintable(text));
    }
}

VX_TEST_MAIN(QCoreApplication, tst_VXStringHelper)

#include "tst_VXStringHelper.moc"
