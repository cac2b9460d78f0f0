#include "VXTestMain.h"
#include "VXWorker.h"

#include <VXNetworking/VXNetworkAccessManagerSignalDispatcher.h>

#include <QtCore/QCoreApplication>
#include <QtCore/QMetaMethod>
#include <QtCore/QThread>
#include <QtCore/QUrl>
#include <QtNetwork/QAuthenticator>
#include <QtTest/QSignalSpy>

using namespace Qt::StringLiterals;

using Dispatcher = VXNetworkAccessManagerSignalDispatcher;

class tst_VXNetworkAccessManagerSignalDispatcher : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void livesInTheApplicationThreadWhoeverMadeIt();
    void hasThreeSignalsInOrderAndNoSlots();
    void unconnectedQuestionChangesNothing();
    void answersArriveThroughThePointers();
    void questionsAreWelcomeUntilTheApplicationEnds();
};

void tst_VXNetworkAccessManagerSignalDispatcher::livesInTheApplicationThreadWhoeverMadeIt()
{
    // The first test: nobody has asked for the instance before the worker.
    QVERIFY(!VXSingleton<Dispatcher>::hasInstance());
    Dispatcher* const made = vxRun(VXWhere::Worker, [] { return Dispatcher::instance(); });
    QVERIFY(made);
    QCOMPARE(Dispatcher::instance(), made);
    QCOMPARE(made->thread(), QCoreApplication::instance()->thread());
    QVERIFY(!made->parent());
}

void tst_VXNetworkAccessManagerSignalDispatcher::hasThreeSignalsInOrderAndNoSlots()
{
    const QMetaObject& meta = Dispatcher::staticMetaObject;
    QList<QByteArray> signatures;
    QList<QByteArrayList> names;
    for (int i = meta.methodOffset(); i < meta.methodCount(); ++i) {
        QCOMPARE(meta.method(i).methodType(), QMetaMethod::Signal);
        signatures.append(meta.method(i).methodSignature());
        names.append(meta.method(i).parameterNames());
    }
    QCOMPARE(signatures, (QList{"authenticationRequired(QUrl,QAuthenticator*)"_ba,
                                "proxyAuthenticationRequired(QUrl,QAuthenticator*,QString)"_ba,
                                "askIgnoreSSLErrors(QString,QStringList,bool*)"_ba}));
    QCOMPARE(names, (QList{QByteArrayList{"theUrl", "theAuthenticator"},
                           QByteArrayList{"theUrl", "theAuthenticator", "theProxyHost"},
                           QByteArrayList{"theHost", "theErrorList", "theResult"}}));
}

void tst_VXNetworkAccessManagerSignalDispatcher::unconnectedQuestionChangesNothing()
{
    bool isAccepted = false;
    QAuthenticator authenticator;
    Q_EMIT Dispatcher::instance()->askIgnoreSSLErrors(u"host"_s, {u"error"_s}, &isAccepted);
    Q_EMIT Dispatcher::instance()->authenticationRequired(QUrl(), &authenticator);
    QVERIFY(!isAccepted);
    QVERIFY(authenticator.isNull());
}

void tst_VXNetworkAccessManagerSignalDispatcher::answersArriveThroughThePointers()
{
    QObject answerer;
    QThread* asked = nullptr;
    connect(Dispatcher::instance(), &Dispatcher::askIgnoreSSLErrors, &answerer,
            [&](const QString& theHost, const QStringList& theErrors, bool* theResult) {
                asked = QThread::currentThread();
                *theResult = theHost == u"host"_s && theErrors == QStringList{u"error"_s};
            });
    // As the manager of a worker does it.
    const bool isAccepted = vxRun(VXWhere::Worker, [] {
        bool result = false;
        QMetaObject::invokeMethod(
            Dispatcher::instance(),
            [&result] {
                Q_EMIT Dispatcher::instance()->askIgnoreSSLErrors(u"host"_s, {u"error"_s}, &result);
            },
            Qt::BlockingQueuedConnection);
        return result;
    });
    QVERIFY(isAccepted);
    QCOMPARE(asked, QThread::currentThread());
}

void tst_VXNetworkAccessManagerSignalDispatcher::questionsAreWelcomeUntilTheApplicationEnds()
{
    {
        const Dispatcher::Question question;
        QVERIFY(question.mayBeAsked());
    }
    // The last thing of an application's loop; it must not wait when nobody asks.
    QMetaObject::invokeMethod(QCoreApplication::instance(), &QCoreApplication::quit,
                              Qt::QueuedConnection);
    QCoreApplication::exec();
    QVERIFY(!Dispatcher::Question().mayBeAsked());
    QCoreApplication::processEvents();
    QVERIFY(Dispatcher::Question().mayBeAsked());
}

VX_TEST_MAIN(QCoreApplication, tst_VXNetworkAccessManagerSignalDispatcher)

#include "tst_VXNetworkAccessManagerSignalDispatcher.moc"
