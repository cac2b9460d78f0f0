// A service that takes the revocation at quit and never answers. Takes the two minutes that the
// library waits, so it is a program of its own; it sleeps meanwhile.

#include "VXRawAnswer.h"
#include "VXRawPeer.h"
#include "VXReliabilityDocument.h"
#include "VXTestMain.h"

#include <VXNetworking/VXCloudSessionOAuth2.h>

#include <QtCore/QCoreApplication>
#include <QtCore/QElapsedTimer>
#include <QtCore/QJsonObject>
#include <QtCore/QTimer>

using namespace Qt::StringLiterals;

namespace {

class Session : public VXCloudSessionOAuth2
{
public:
    explicit Session(const VXRawPeer& thePeer)
        : myPeer(thePeer)
    {
    }

    QString clientId() const override { return u"client-1"_s; }
    QUrl logoutUrl() const override { return myPeer.url(u"/revoke"_s); }
    QUrl tokenUrl() const override { return myPeer.url(u"/token"_s); }

private:
    const VXRawPeer& myPeer;
};

} // namespace

class tst_stalled_logout : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void quittingWaitsTwoMinutesAndNoLonger();
};

void tst_stalled_logout::quittingWaitsTwoMinutesAndNoLonger()
{
    VXRawPeer peer;
    peer.setAnswer(VXRawAnswer().stall());
    Session session(peer);
    session.parseOAuth2Reply({{u"access_token"_s, u"at"_s}, {u"refresh_token"_s, u"rt"_s}});
    QVERIFY(session.isOpen());
    session.setLogoutOnClose(true);

    QElapsedTimer clock;
    clock.start();
    QTimer::singleShot(0, QCoreApplication::instance(), &QCoreApplication::quit);
    QCoreApplication::exec();

    QVERIFY2(clock.elapsed() >= 119'000, QByteArray::number(clock.elapsed()));
    QVERIFY2(clock.elapsed() < 150'000, QByteArray::number(clock.elapsed()));
    QCOMPARE(peer.requests().size(), 1);
    QCOMPARE(peer.requests().constFirst().body, "client_id=client-1&client_id=client-1&token=rt");
    QVERIFY(!session.isOpen());
    QCOMPARE(session.refreshToken(), QString());
    const auto rows = VXReliabilityDocument::rows(u"Quitting with a session"_s);
    QCOMPARE(rows.value(u"never answered"_s), (QStringList{u"forgotten"_s, u"120"_s}));
}

VX_TEST_MAIN(QCoreApplication, tst_stalled_logout)

#include "tst_stalled_logout.moc"
