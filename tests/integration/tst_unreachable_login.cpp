// The login in a page, at a provider that is silent: the real 60 seconds.

#include "VXDialogVisitor.h"
#include "VXRawPeer.h"
#include "VXTestMain.h"
#include "VXWebTest.h"

#include <VXNetworking/VXOAuth2LoginDialog.h>

#include <QtCore/QElapsedTimer>
#include <QtWidgets/QApplication>
#include <QtWidgets/QMessageBox>
#include <QtWidgets/QProgressDialog>
#include <QtWidgets/QPushButton>

using namespace Qt::StringLiterals;

class tst_unreachable_login : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void messageComesAfterOneMinute();
};

void tst_unreachable_login::messageComesAfterOneMinute()
{
    VXRawPeer peer;
    peer.setAnswer(VXRawAnswer().stall());
    VXOAuth2LoginDialog dialog(peer.url(), u"Tessarim"_s, {});
    QElapsedTimer clock;
    QList<qint64> progressAt; // milliseconds
    QList<qint64> messageAt;
    const VXDialogVisitor user([&](QDialog* theDialog) {
        if (qobject_cast<QProgressDialog*>(theDialog) != nullptr)
            progressAt << clock.elapsed();
        if (auto* const box = qobject_cast<QMessageBox*>(theDialog)) {
            messageAt << clock.elapsed();
            box->button(QMessageBox::Ok)->click();
        }
    });
    clock.start();
    QCOMPARE(dialog.exec(), int{QDialog::Rejected});
    QCOMPARE(progressAt.size(), 1);
    QVERIFY2(progressAt.at(0) > 4000 && progressAt.at(0) < 30000,
             QByteArray::number(progressAt.at(0)));
    QCOMPARE(messageAt.size(), 1);
    QVERIFY2(messageAt.at(0) >= 60000 && messageAt.at(0) < 90000,
             QByteArray::number(messageAt.at(0)));
}

VX_TEST_MAIN(QApplication, tst_unreachable_login)

#include "tst_unreachable_login.moc"
