#include <VXNetworking/VXHttpOperation.h>

#include <QtCore/QCoreApplication>
#include <QtNetwork/QTcpServer>
#include <QtNetwork/QTcpSocket>

#include <cstdio>

/// One exchange with a server of its own; prints code, status and body.
int main(int theArgumentCount, char* theArguments[])
{
    const QCoreApplication application(theArgumentCount, theArguments);

    QTcpServer server;
    if (!server.listen(QHostAddress::LocalHost))
        return 1;
    QObject::connect(&server, &QTcpServer::newConnection, &server, [&server] {
        server.nextPendingConnection()->write("HTTP/1.1 200 OK\r\nContent-Length: 5\r\n\r\nHallo");
    });

    const QUrl url(QStringLiteral("http://127.0.0.1:%1/").arg(server.serverPort()));
    auto exchange = VXHttpOperation::create(url, QNetworkAccessManager::GetOperation);
    const QByteArray body = exchange.exec();
    std::printf("%d %d %s\n", exchange.errorStatus().errorCode(), exchange.httpResponseCode(),
                body.constData());
    return 0;
}
