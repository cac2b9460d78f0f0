#include "VXSimulatorProcess.h"
#include "VXSimulatorWire.h"
#include "VXTestMain.h"

#include <QtCore/QCoreApplication>

#include <memory>

using namespace Qt::StringLiterals;

/// Sends the simulator what no proper client sends. After each try it must serve a good request.
class tst_simulator_hostile : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void cleanup();
    void cleanupTestCase();
    void badRequestIsRefused_data();
    void badRequestIsRefused();
    void badFramingIsRefused_data();
    void badFramingIsRefused();
    void oddRequestIsAnswered_data();
    void oddRequestIsAnswered();
    void clientThatLeavesEarlyIsForgotten_data();
    void clientThatLeavesEarlyIsForgotten();
    void proxyRefusesBadRequests_data();
    void proxyRefusesBadRequests();
    void socksRefusesBadMessages_data();
    void socksRefusesBadMessages();
    void socksRefusesBadPasswordMessages_data();
    void socksRefusesBadPasswordMessages();
    void multipartRefusesBadBodies_data();
    void multipartRefusesBadBodies();
    void controlRefusesBadBodies_data();
    void controlRefusesBadBodies();
    void plainBytesOnATlsPortEnd();

private:
    [[nodiscard]] int port(const char* theName) const;
    [[nodiscard]] QByteArray send(const char* thePort, const QByteArray& theBytes) const;

    std::unique_ptr<VXSimulatorProcess> mySimulator;
};

namespace {

/// A literal with NUL bytes in it.
template <std::size_t size>
QByteArray raw(const char (&theText)[size])
{
    return QByteArray(theText, size - 1);
}

QByteArray post(const QByteArray& theHeaders, const QByteArray& theBody)
{
    return "POST /echo HTTP/1.1\r\nHost: a\r\n" + theHeaders + "\r\n\r\n" + theBody;
}

const QByteArray chunked = "Transfer-Encoding: chunked";
const QByteArray smuggled = "GET /smuggled HTTP/1.1\r\nHost: a\r\n\r\n";

} // namespace

int tst_simulator_hostile::port(const char* theName) const
{
    return mySimulator->port(QString::fromLatin1(theName));
}

QByteArray tst_simulator_hostile::send(const char* thePort, const QByteArray& theBytes) const
{
    return VXSimulatorWire::exchange(port(thePort), theBytes);
}

void tst_simulator_hostile::initTestCase()
{
    mySimulator = std::make_unique<VXSimulatorProcess>();
    QCOMPARE(mySimulator->errorText(), QString());
}

void tst_simulator_hostile::cleanup()
{
    const QByteArray good = "HTTP/1.1 200 OK\r\n";
    QVERIFY(send("http", VXSimulatorWire::get("/json/good")).startsWith(good));
    QVERIFY(send("proxy", VXSimulatorWire::get("http://service.test/json/good")).startsWith(good));
    const QByteArray tunnel = send("socks", raw("\5\1\0\5\1\0\3\x0cservice.test\0\x50") +
                                                VXSimulatorWire::get("/json/good"));
    QVERIFY2(tunnel.startsWith(raw("\5\0\5\0\0\1\0\0\0\0\0\0") + good), tunnel.toHex());
    const QByteArray requests = send("control", VXSimulatorWire::get("/requests"));
    QVERIFY(requests.startsWith(good));
    QVERIFY(!requests.contains("smuggled"));
}

void tst_simulator_hostile::cleanupTestCase()
{
    mySimulator.reset();
}

void tst_simulator_hostile::badRequestIsRefused_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<QByteArray>("answer");

    const QByteArray bad = "HTTP/1.1 400 Bad Request\r\n";
    const QByteArray line = "GET / HTTP/1.1\r\n";
    QTest::newRow("one word") << QByteArray("GET\r\n") << bad;
    QTest::newRow("two words") << QByteArray("GET /\r\n") << bad;
    QTest::newRow("four words") << QByteArray("GET / / HTTP/1.1\r\n") << bad;
    QTest::newRow("blank first") << QByteArray(" GET / HTTP/1.1\r\n") << bad;
    QTest::newRow("two blanks") << QByteArray("GET  / HTTP/1.1\r\n") << bad;
    QTest::newRow("tabs") << QByteArray("GET\t/\tHTTP/1.1\r\n") << bad;
    QTest::newRow("method of 33 letters") << QByteArray(33, 'A') + " / HTTP/1.1\r\n" << bad;
    QTest::newRow("method with brackets") << QByteArray("G(E)T / HTTP/1.1\r\n") << bad;
    QTest::newRow("8-bit method") << QByteArray("G\xc4T / HTTP/1.1\r\n") << bad;
    QTest::newRow("NUL in the target") << raw("GET /\0 HTTP/1.1\r\n") << bad;
    QTest::newRow("carriage return in the target") << QByteArray("GET /\ra HTTP/1.1\r\n") << bad;
    QTest::newRow("escape in the target") << QByteArray("GET /\x1b[2J HTTP/1.1\r\n") << bad;
    QTest::newRow("only NULs") << QByteArray(100, '\0') + "\r\n" << bad;
    QTest::newRow("TLS hello") << raw("\x16\x03\x01\x02\0\x01\0\x01\xfc\x03\x03\n") << bad;
    QTest::newRow("HTTP/2 preface") << QByteArray("PRI * HTTP/2.0\r\n\r\nSM\r\n\r\n")
                                    << QByteArray("HTTP/1.1 505 HTTP Version Not Supported\r\n");
    QTest::newRow("HTTP/9.9") << QByteArray("GET / HTTP/9.9\r\n")
                              << QByteArray("HTTP/1.1 505 HTTP Version Not Supported\r\n");
    QTest::newRow("other protocol") << QByteArray("GET / FTP/1.1\r\n") << bad;
    QTest::newRow("lower-case protocol") << QByteArray("GET / http/1.1\r\n") << bad;
    QTest::newRow("no colon") << line + "Host\r\n" << bad;
    QTest::newRow("no name") << line + ": a\r\n" << bad;
    QTest::newRow("blank before the colon") << line + "Host : a\r\n" << bad;
    QTest::newRow("folded line") << line + "Host: a\r\n b\r\n" << bad;
    QTest::newRow("folded with a tab") << line + "Host: a\r\n\tb\r\n" << bad;
    QTest::newRow("first header folded") << line + " Host: a\r\n" << bad;
    QTest::newRow("NUL in a name") << line + raw("Ho\0st: a\r\n") << bad;
    QTest::newRow("NUL in a value") << line + raw("Host: a\0b\r\n") << bad;
    QTest::newRow("8-bit name") << line + "H\xf6st: a\r\n" << bad;
    QTest::newRow("carriage return in a value") << line + "Host: a\rX: b\r\n" << bad;
}

void tst_simulator_hostile::badRequestIsRefused()
{
    QFETCH(QByteArray, bytes);
    QFETCH(QByteArray, answer);
    const QByteArray received = send("http", bytes);
    QVERIFY2(received.startsWith(answer), received.constData());
    QVERIFY(received.endsWith(R"({"error":"request refused"})"));
}

void tst_simulator_hostile::badFramingIsRefused_data()
{
    QTest::addColumn<QByteArray>("headers");
    QTest::addColumn<QByteArray>("body");
    QTest::addColumn<int>("status");

    const auto length = [](const char* theText) {
        return QByteArray("Content-Length: ") + theText;
    };
    QTest::newRow("length is no number") << length("abc") << QByteArray() << 400;
    QTest::newRow("empty length") << length("") << QByteArray() << 400;
    QTest::newRow("negative length") << length("-1") << smuggled << 400;
    QTest::newRow("length with a plus") << length("+5") << QByteArray("hello") << 400;
    QTest::newRow("hexadecimal length") << length("0x5") << QByteArray("hello") << 400;
    QTest::newRow("length with a point") << length("5.0") << QByteArray("hello") << 400;
    QTest::newRow("length above 64 bits") << length("18446744073709551621") << smuggled << 400;
    QTest::newRow("huge length") << length("9223372036854775807") << smuggled << 413;
    QTest::newRow("two lengths in a line") << length("5, 5") << QByteArray("hello") << 400;
    QTest::newRow("two lengths that differ")
        << length("0\r\nContent-Length: 36") << smuggled << 400;
    QTest::newRow("length and chunks")
        << length("4\r\nTransfer-Encoding: chunked") << "0\r\n\r\n" + smuggled << 400;
    QTest::newRow("chunks and length") << chunked + "\r\nContent-Length: 4"
                                       << "0\r\n\r\n" + smuggled << 400;
    QTest::newRow("chunks twice") << chunked + "\r\n" + chunked << "0\r\n\r\n" + smuggled << 501;
    QTest::newRow("chunks below gzip")
        << QByteArray("Transfer-Encoding: gzip, chunked") << "0\r\n\r\n" + smuggled << 501;
    QTest::newRow("chunks with a bracket")
        << QByteArray("Transfer-Encoding: xchunked") << "0\r\n\r\n" + smuggled << 501;
    QTest::newRow("unknown encoding")
        << QByteArray("Transfer-Encoding: identity") << smuggled << 501;
    QTest::newRow("blank before the colon of chunks")
        << QByteArray("Transfer-Encoding : chunked") << "0\r\n\r\n" + smuggled << 400;
    QTest::newRow("chunk size is no number") << chunked << QByteArray("xyz\r\n") << 400;
    QTest::newRow("empty chunk size") << chunked << QByteArray("\r\n") << 400;
    QTest::newRow("only an extension") << chunked << QByteArray(";a=b\r\n") << 400;
    QTest::newRow("negative chunk size") << chunked << "-1\r\n" + smuggled << 400;
    QTest::newRow("chunk size with 0x")
        << chunked << QByteArray("0x5\r\nhello\r\n0\r\n\r\n") << 400;
    QTest::newRow("chunk size above 64 bits")
        << chunked << QByteArray("10000000000000005\r\nhello\r\n") << 400;
    QTest::newRow("huge chunk") << chunked << QByteArray("7fffffffffffffff\r\n") << 413;
    QTest::newRow("chunk longer than its size")
        << chunked << QByteArray("5\r\nhello!\r\n0\r\n\r\n") << 400;
    QTest::newRow("chunk without line end") << chunked << QByteArray("5\r\nhello0\r\n\r\n") << 400;
}

void tst_simulator_hostile::badFramingIsRefused()
{
    QFETCH(QByteArray, headers);
    QFETCH(QByteArray, body);
    QFETCH(int, status);
    const QByteArray received = send("http", post(headers, body));
    QVERIFY2(received.startsWith("HTTP/1.1 " + QByteArray::number(status) + ' '),
             received.constData());
    QCOMPARE(received.count("HTTP/1.1"), 1); // nothing behind it was read as a request
}

void tst_simulator_hostile::oddRequestIsAnswered_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<QByteArray>("expected");

    const QByteArray end = "Connection: close\r\n\r\n";
    QTest::newRow("bare line feeds")
        << QByteArray("GET /echo HTTP/1.1\nX: y\nConnection: close\n\n")
        << QByteArray(R"(["X","y"])");
    QTest::newRow("empty lines first")
        << "\r\n\r\nGET /echo HTTP/1.1\r\n" + end << QByteArray(R"("method":"GET")");
    QTest::newRow("8-bit target") << "GET /echo?\xff HTTP/1.1\r\n" + end
                                  << QByteArray("\"target\":\"/echo?\xc3\xbf\"");
    QTest::newRow("8-bit value") << "GET /echo HTTP/1.1\r\nX: \xfc\r\n" + end
                                 << QByteArray("[\"X\",\"\xc3\xbc\"]");
    QTest::newRow("NUL in the decoded path")
        << "GET /pages/%00 HTTP/1.1\r\n" + end << QByteArray("HTTP/1.1 404 ");
    QTest::newRow("bad percent signs")
        << "GET /echo?%zz=%2 HTTP/1.1\r\n" + end << QByteArray(R"("target":"/echo?%zz=%2")");
    QTest::newRow("line end in a decoded query")
        << "GET /status/200?type=a%0d%0aX-Evil:1 HTTP/1.1\r\n" + end
        << QByteArray("Content-Type: text/plain\r\n");
    QTest::newRow("line end in a location")
        << "GET /redirect/1?to=%0aX-Evil:1 HTTP/1.1\r\n" + end << QByteArray("HTTP/1.1 400 ");
    QTest::newRow("no slash") << "GET echo HTTP/1.1\r\n" + end << QByteArray("HTTP/1.1 404 ");
    QTest::newRow("star") << "OPTIONS * HTTP/1.1\r\n" + end << QByteArray("HTTP/1.1 404 ");
    QTest::newRow("only a scheme")
        << "GET http:// HTTP/1.1\r\n" + end << QByteArray("HTTP/1.1 404 ");
    QTest::newRow("same length twice")
        << "POST /echo HTTP/1.1\r\nContent-Length: 1\r\nContent-Length: 1\r\n" + end + "x"
        << QByteArray(R"("bodySize":1,)");
    QTest::newRow("trailers") << "POST /echo HTTP/1.1\r\n" + chunked + "\r\n" + end +
                                     "1;a=b\r\nx\r\n0\r\nT: 1\r\n\r\n"
                              << QByteArray(R"("bodySize":1,)");
    QTest::newRow("range the wrong way round")
        << "GET /bytes/10 HTTP/1.1\r\nRange: bytes=9-1\r\n" + end << QByteArray("HTTP/1.1 200 ");
    QTest::newRow("range above 64 bits")
        << "GET /bytes/10 HTTP/1.1\r\nRange: bytes=99999999999999999999-\r\n" + end
        << QByteArray("HTTP/1.1 200 ");
    QTest::newRow("number above 64 bits")
        << "GET /bytes/99999999999999999999 HTTP/1.1\r\n" + end << QByteArray("HTTP/1.1 400 ");
    QTest::newRow("form with half a pair")
        << "POST /oauth2/token HTTP/1.1\r\nContent-Length: 6\r\n" + end + "=&%=&&"
        << QByteArray("unsupported_grant_type");
    QTest::newRow("order with a NUL")
        << "GET /xtci/a?text=%00%01x HTTP/1.1\r\n" + end << QByteArray("<errortext>x</errortext>");
}

void tst_simulator_hostile::oddRequestIsAnswered()
{
    QFETCH(QByteArray, bytes);
    QFETCH(QByteArray, expected);
    const QByteArray received = send("http", bytes);
    QVERIFY2(received.contains(expected), received.constData());
    QVERIFY(!received.contains("\nX-Evil"));
}

void tst_simulator_hostile::clientThatLeavesEarlyIsForgotten_data()
{
    QTest::addColumn<QByteArray>("name");
    QTest::addColumn<QByteArray>("bytes");

    QTest::newRow("nothing") << QByteArray("http") << QByteArray();
    QTest::newRow("half a request line") << QByteArray("http") << QByteArray("GET /smuggled");
    QTest::newRow("half a head") << QByteArray("http")
                                 << QByteArray("GET /smuggled HTTP/1.1\r\nHost: ");
    QTest::newRow("half a body") << QByteArray("http")
                                 << QByteArray(
                                        "PUT /smuggled HTTP/1.1\r\nContent-Length: 9\r\n\r\nx");
    QTest::newRow("half a chunk")
        << QByteArray("http")
        << QByteArray("PUT /smuggled HTTP/1.1\r\nTransfer-Encoding: chunked\r\n\r\n9\r\nx");
    QTest::newRow("no trailer")
        << QByteArray("http")
        << QByteArray("PUT /smuggled HTTP/1.1\r\nTransfer-Encoding: chunked\r\n\r\n0\r\n");
    QTest::newRow("no wish for the answer")
        << QByteArray("http") << QByteArray("GET /bytes/8589934592 HTTP/1.1\r\n\r\n");
    QTest::newRow("much behind an answer that never comes")
        << QByteArray("http") << "GET /never HTTP/1.1\r\n\r\n" + QByteArray(4'000'000, 'x');
    QTest::newRow("half a request to the proxy")
        << QByteArray("proxy") << QByteArray("GET http://service.test/smuggled HTTP/1.1\r\n");
    QTest::newRow("tunnel and gone")
        << QByteArray("proxy") << QByteArray("CONNECT service.test:80 HTTP/1.1\r\n\r\n");
    QTest::newRow("half a greeting") << QByteArray("socks") << raw("\5\2\0");
    QTest::newRow("half an address") << QByteArray("socks") << raw("\5\1\0\5\1\0\3\x20service");
    QTest::newRow("socks tunnel and gone")
        << QByteArray("socks") << raw("\5\1\0\5\1\0\1\x7f\0\0\1\0\1");
}

void tst_simulator_hostile::clientThatLeavesEarlyIsForgotten()
{
    QFETCH(QByteArray, name);
    QFETCH(QByteArray, bytes);
    for (int times = 0; times < 3; ++times)
        VXSimulatorWire::leave(port(name), bytes);
}

void tst_simulator_hostile::proxyRefusesBadRequests_data()
{
    QTest::addColumn<QByteArray>("line");
    QTest::addColumn<int>("status");

    QTest::newRow("no address") << QByteArray("GET / HTTP/1.1") << 400;
    QTest::newRow("other scheme") << QByteArray("GET ftp://service.test/ HTTP/1.1") << 400;
    QTest::newRow("https without tunnel")
        << QByteArray("GET https://service.test/ HTTP/1.1") << 400;
    QTest::newRow("file") << QByteArray("GET file:///etc/passwd HTTP/1.1") << 400;
    QTest::newRow("no host") << QByteArray("GET http:///x HTTP/1.1") << 400;
    QTest::newRow("bad host") << QByteArray("GET http://a%00b/ HTTP/1.1") << 400;
    QTest::newRow("8-bit host") << QByteArray("GET http://\xff.test/ HTTP/1.1") << 400;
    QTest::newRow("port above the last")
        << QByteArray("GET http://service.test:65616/ HTTP/1.1") << 400;
    QTest::newRow("tunnel without port") << QByteArray("CONNECT service.test HTTP/1.1") << 400;
    QTest::newRow("tunnel to port 0") << QByteArray("CONNECT service.test:0 HTTP/1.1") << 400;
    QTest::newRow("tunnel to port -1") << QByteArray("CONNECT service.test:-1 HTTP/1.1") << 400;
    QTest::newRow("tunnel to nothing") << QByteArray("CONNECT : HTTP/1.1") << 400;
    QTest::newRow("tunnel elsewhere") << QByteArray("CONNECT 192.0.2.1:80 HTTP/1.1") << 502;
    QTest::newRow("host behind a user")
        << QByteArray("GET http://127.0.0.1@192.0.2.1/ HTTP/1.1") << 502;
    QTest::newRow("any address") << QByteArray("GET http://0.0.0.0/ HTTP/1.1") << 502;
    QTest::newRow("nobody listens") << QByteArray("CONNECT 127.0.0.1:1 HTTP/1.1") << 502;
    QTest::newRow("no request") << QByteArray("\x05\x01") << 400;
}

void tst_simulator_hostile::proxyRefusesBadRequests()
{
    QFETCH(QByteArray, line);
    QFETCH(int, status);
    const QByteArray received = send("proxy", line + "\r\nHost: a\r\n\r\n" + smuggled);
    QVERIFY2(received.startsWith("HTTP/1.1 " + QByteArray::number(status) + ' '),
             received.constData());
    QCOMPARE(received.count("HTTP/1.1"), 1);
}

void tst_simulator_hostile::socksRefusesBadMessages_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<QByteArray>("answer");

    const QByteArray greeting = raw("\5\1\0");
    const QByteArray admitted = raw("\5\0");
    const auto code = [&](char theCode) {
        return admitted + '\5' + theCode + raw("\0\1\0\0\0\0\0\0");
    };
    QTest::newRow("SOCKS4") << raw("\4\1\0\x50\x7f\0\0\1\0") << QByteArray();
    QTest::newRow("HTTP") << QByteArray("GET / HTTP/1.1\r\n\r\n") << QByteArray();
    QTest::newRow("version 0") << raw("\0\1\0") << QByteArray();
    QTest::newRow("no methods") << raw("\5\0") << raw("\5\xff");
    QTest::newRow("unknown methods") << raw("\5\2\1\3") << raw("\5\xff");
    QTest::newRow("255 unknown methods") << raw("\5\xff") + QByteArray(255, '\7') << raw("\5\xff");
    QTest::newRow("version of the request")
        << greeting + raw("\4\1\0\1\x7f\0\0\1\0\x50") << admitted;
    QTest::newRow("bind") << greeting + raw("\5\2\0\1\x7f\0\0\1\0\x50") << code(7);
    QTest::newRow("udp") << greeting + raw("\5\3\0\1\x7f\0\0\1\0\x50") << code(7);
    QTest::newRow("command 0") << greeting + raw("\5\0\0\1\x7f\0\0\1\0\x50") << code(7);
    QTest::newRow("kind of address 0") << greeting + raw("\5\1\0\0\xff") << code(8);
    QTest::newRow("kind of address 2") << greeting + raw("\5\1\0\2\xff") << code(8);
    QTest::newRow("kind of address 255") << greeting + raw("\5\1\0\xff\xff") << code(8);
    QTest::newRow("empty name") << greeting + raw("\5\1\0\3\0\0\x50") << code(2);
    QTest::newRow("name with a NUL") << greeting + raw("\5\1\0\3\7a\0.test\0\x50") << code(2);
    QTest::newRow("name of 255 letters")
        << greeting + raw("\5\1\0\3\xff") + QByteArray(255, 'a') + raw("\0\x50") << code(2);
    QTest::newRow("8-bit name") << greeting + raw("\5\1\0\3\1\xff\0\x50") << code(2);
    QTest::newRow("port 0") << greeting + raw("\5\1\0\1\x7f\0\0\1\0\0") << code(2);
    QTest::newRow("other address") << greeting + raw("\5\1\0\1\xc0\0\2\1\0\x50") << code(2);
    QTest::newRow("other IPv6 address")
        << greeting + raw("\5\1\0\4\x20\1\r\xb8\0\0\0\0\0\0\0\0\0\0\0\1\0\x50") << code(2);
    QTest::newRow("nobody listens") << greeting + raw("\5\1\0\1\x7f\0\0\1\0\1") << code(5);
    QTest::newRow("much behind it")
        << greeting + raw("\5\1\0\1\x7f\0\0\1\0\1") + QByteArray(3'000'000, 'x') << code(5);
}

void tst_simulator_hostile::socksRefusesBadMessages()
{
    QFETCH(QByteArray, bytes);
    QFETCH(QByteArray, answer);
    const QByteArray received = send("socks", bytes);
    QVERIFY(!received.isNull());
    QCOMPARE(received.toHex(), answer.toHex());
}

void tst_simulator_hostile::socksRefusesBadPasswordMessages_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<QByteArray>("answer");

    const QByteArray greeting = raw("\5\1\2");
    const QByteArray refused = raw("\5\2\1\1");
    QTest::newRow("no password offered") << raw("\5\1\0") << raw("\5\xff");
    QTest::newRow("version 5") << greeting + raw("\5\1u\1p") << raw("\5\2");
    QTest::newRow("empty") << greeting + raw("\1\0\0") << refused;
    QTest::newRow("wrong") << greeting + raw("\1\1u\1x") << refused;
    QTest::newRow("longest") << greeting + raw("\1\xff") + QByteArray(255, 'u') + '\xff' +
                                    QByteArray(255, 'p')
                             << refused;
}

void tst_simulator_hostile::socksRefusesBadPasswordMessages()
{
    QFETCH(QByteArray, bytes);
    QFETCH(QByteArray, answer);
    const auto set = [&](const QByteArray& theBody) {
        return send("control", "PUT /socks HTTP/1.1\r\nConnection: close\r\nContent-Length: " +
                                   QByteArray::number(theBody.size()) + "\r\n\r\n" + theBody);
    };
    QVERIFY(set(R"({"user":"u","password":"p"})").contains(R"({"ok":true})"));
    const QByteArray received = send("socks", bytes);
    QVERIFY(set("{}").contains(R"({"ok":true})"));
    QCOMPARE(received.toHex(), answer.toHex());
}

void tst_simulator_hostile::multipartRefusesBadBodies_data()
{
    QTest::addColumn<QByteArray>("type");
    QTest::addColumn<QByteArray>("body");

    const QByteArray type = "multipart/form-data; boundary=b";
    const QByteArray part = "--b\r\nContent-Disposition: form-data; name=\"a\"\r\n\r\nx\r\n";
    QTest::newRow("no type") << QByteArray() << part + "--b--\r\n";
    QTest::newRow("other type") << QByteArray("text/plain; boundary=b") << part + "--b--\r\n";
    QTest::newRow("no boundary") << QByteArray("multipart/form-data") << part + "--b--\r\n";
    QTest::newRow("empty boundary") << QByteArray("multipart/form-data; boundary=") << part;
    QTest::newRow("open quotation mark")
        << QByteArray("multipart/form-data; boundary=\"b") << part + "--b--\r\n";
    QTest::newRow("other boundary") << QByteArray("multipart/form-data; boundary=c") << part;
    QTest::newRow("empty body") << type << QByteArray();
    QTest::newRow("only a boundary") << type << QByteArray("--b");
    QTest::newRow("only a boundary line") << type << QByteArray("--b\r\n");
    QTest::newRow("no end") << type << part;
    QTest::newRow("end cut off") << type << part + "--";
    QTest::newRow("no content") << type << QByteArray("--b\r\nA: b\r\n--b--\r\n");
    QTest::newRow("bare line feeds") << type << QByteArray("--b\nA: b\n\nx\n--b--\n");
    QTest::newRow("only NULs") << type << QByteArray(1000, '\0');
    QTest::newRow("head above 16 KiB")
        << type << "--b\r\nA: " + QByteArray(16 * 1024, 'a') + "\r\n\r\nx\r\n--b--\r\n";
    QTest::newRow("1000 parts and the end missing") << type << part.repeated(1000);
    QTest::newRow("1001 parts") << type << part.repeated(1001) + "--b--\r\n";
}

void tst_simulator_hostile::multipartRefusesBadBodies()
{
    QFETCH(QByteArray, type);
    QFETCH(QByteArray, body);
    const QByteArray received = send(
        "http", "POST /multipart HTTP/1.1\r\nConnection: close\r\nContent-Type: " + type +
                    "\r\nContent-Length: " + QByteArray::number(body.size()) + "\r\n\r\n" + body);
    QVERIFY2(received.startsWith("HTTP/1.1 400 "), received.constData());
    QVERIFY(received.endsWith(R"({"error":"this is no multipart body"})"));
}

void tst_simulator_hostile::controlRefusesBadBodies_data()
{
    QTest::addColumn<QByteArray>("target");
    QTest::addColumn<QByteArray>("body");
    QTest::addColumn<QByteArray>("error");

    const QByteArray noObject = "the body is no JSON object";
    QTest::newRow("no JSON") << QByteArray("/behaviour") << QByteArray("path=/") << noObject;
    QTest::newRow("cut off") << QByteArray("/oauth") << QByteArray(R"({"expiresIn":3)") << noObject;
    QTest::newRow("list") << QByteArray("/clock") << QByteArray("[1]") << noObject;
    QTest::newRow("number") << QByteArray("/proxy") << QByteArray("5") << noObject;
    QTest::newRow("NUL") << QByteArray("/socks") << raw("{\0}") << noObject;
    QTest::newRow("no UTF-8") << QByteArray("/scenario") << QByteArray("{\"\xff\":1}") << noObject;
    QTest::newRow("nested") << QByteArray("/scenario") << QByteArray(100'000, '[') << noObject;
    QTest::newRow("nested objects")
        << QByteArray("/scenario") << QByteArray(R"({"a":)").repeated(20'000) << noObject;
    QTest::newRow("two objects") << QByteArray("/clock") << QByteArray("{}{}") << noObject;
    QTest::newRow("above 1 MiB") << QByteArray("/clock") << "{}" + QByteArray(1024 * 1024 - 1, ' ')
                                 << noObject;
    QTest::newRow("unknown key") << QByteArray("/oauth") << QByteArray(R"({"a":1})")
                                 << QByteArray(R"(oauth: unknown key \"a\")");
    QTest::newRow("text for a number")
        << QByteArray("/clock") << QByteArray(R"({"offsetMs":"1"})")
        << QByteArray(R"(clock: \"offsetMs\" must be a whole number from )");
    QTest::newRow("half a number") << QByteArray("/oauth") << QByteArray(R"({"expiresIn":0.5})")
                                   << QByteArray(R"(from 0 to 1000000000)");
    QTest::newRow("huge number") << QByteArray("/oauth") << QByteArray(R"({"expiresIn":1e300})")
                                 << QByteArray(R"(from 0 to 1000000000)");
    QTest::newRow("number for a flag")
        << QByteArray("/oauth") << QByteArray(R"({"rotateRefresh":1})")
        << QByteArray(R"(oauth: \"rotateRefresh\" must be true or false)");
    QTest::newRow("object for a list")
        << QByteArray("/scenario") << QByteArray(R"({"users":{}})")
        << QByteArray(R"(scenario: \"users\" must be a list of objects)");
    QTest::newRow("list of numbers")
        << QByteArray("/scenario") << QByteArray(R"({"hosts":[1]})")
        << QByteArray(R"(scenario: \"hosts\" must be a list of texts)");
    QTest::newRow("line end in a host")
        << QByteArray("/scenario") << QByteArray(R"({"hosts":["a\n[leaf]"]})")
        << QByteArray(R"(scenario: \"hosts\" must be host names)");
    QTest::newRow("user with a colon")
        << QByteArray("/proxy") << QByteArray(R"({"user":"a:b","password":""})")
        << QByteArray(R"(proxy: \"user\" must be a name without colon)");
    QTest::newRow("line end in a header")
        << QByteArray("/behaviour") << QByteArray(R"({"path":"/x","headers":{"A":"b\r\nC: d"}})")
        << QByteArray(R"(behaviour: \"headers\" must not hold line ends)");
    QTest::newRow("path without slash") << QByteArray("/behaviour") << QByteArray(R"({"path":"x"})")
                                        << QByteArray("must begin with a slash");
    QTest::newRow("status 100") << QByteArray("/behaviour")
                                << QByteArray(R"({"path":"/x","status":100})")
                                << QByteArray("must be 0 or from 200 to 999");
    QTest::newRow("unknown fault")
        << QByteArray("/behaviour") << QByteArray(R"({"path":"/x","fault":"explode"})")
        << QByteArray("must be none, never, reset or truncate");
}

void tst_simulator_hostile::controlRefusesBadBodies()
{
    QFETCH(QByteArray, target);
    QFETCH(QByteArray, body);
    QFETCH(QByteArray, error);
    const QByteArray received =
        send("control", "PUT " + target + " HTTP/1.1\r\nConnection: close\r\nContent-Length: " +
                            QByteArray::number(body.size()) + "\r\n\r\n" + body);
    QVERIFY2(received.startsWith("HTTP/1.1 400 "), received.constData());
    QVERIFY2(received.contains(error), received.constData());
}

void tst_simulator_hostile::plainBytesOnATlsPortEnd()
{
    const int tls = mySimulator->ready().value(u"https"_s).toObject().value(u"trusted"_s).toInt();
    const QByteArray received = VXSimulatorWire::exchange(tls, VXSimulatorWire::get("/echo"));
    QVERIFY(!received.isNull());
    QVERIFY(!received.contains("HTTP/1.1 "));
}

VX_TEST_MAIN(QCoreApplication, tst_simulator_hostile)

#include "tst_simulator_hostile.moc"
