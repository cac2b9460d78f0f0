#include "VXPlainHttpClient.h"
#include "VXSampleAnswers.h"
#include "VXSampleContext.h"
#include "VXSampleHttpPanel.h"
#include "VXSampleLoginPanel.h"
#include "VXSampleOptions.h"
#include "VXSampleOutput.h"
#include "VXSampleSimulator.h"
#include "VXSimulatorProcess.h"
#include "VXTestMain.h"

#include <QtCore/QJsonArray>
#include <QtCore/QJsonDocument>
#include <QtCore/QTimer>
#include <QtWidgets/QApplication>
#include <QtWidgets/QComboBox>
#include <QtWidgets/QLabel>
#include <QtWidgets/QLineEdit>
#include <QtWidgets/QPushButton>
#include <QtWidgets/QSpinBox>

using namespace Qt::StringLiterals;

/// Pages of the sample's window by themselves: what the user does while an exchange handles events.
class tst_sample_panels : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void aSecondLoginWaitsForTheFirst();
    void returnStartsNothingWhileThreadsRun();

private:
    QByteArray control(const QByteArray& theRequestLine, const QByteArray& theBody = {}) const;
    [[nodiscard]] int requestsTo(const QString& thePath) const;

    VXSimulatorProcess mySimulatorProcess;
    VXSampleOptions myOptions;
    VXSampleOutput myOutput;
    VXSampleSimulator mySimulator{mySimulatorProcess.readyFile()};
    VXSampleAnswers myAnswers{myOutput};
    VXSampleContext myContext{myOptions, myOutput, mySimulator, myAnswers};
};

QByteArray tst_sample_panels::control(const QByteArray& theRequestLine,
                                      const QByteArray& theBody) const
{
    VXPlainHttpClient client(QHostAddress::LocalHost,
                             static_cast<quint16>(mySimulatorProcess.port(u"control"_s)));
    return client.ask(theRequestLine, {}, theBody).body;
}

int tst_sample_panels::requestsTo(const QString& thePath) const
{
    const QJsonArray requests =
        QJsonDocument::fromJson(control("GET /requests")).object().value(u"requests"_s).toArray();
    int count = 0;
    for (const QJsonValue request : requests)
        count += request[u"target"_s].toString().startsWith(thePath) ? 1 : 0;
    return count;
}

void tst_sample_panels::initTestCase()
{
    QCOMPARE(mySimulatorProcess.errorText(), QString());
    QVERIFY2(mySimulator.open(), qPrintable(mySimulator.errorText()));
}

void tst_sample_panels::aSecondLoginWaitsForTheFirst()
{
    control("PUT /behaviour", R"({"path":"/oauth2/token","delayMs":500,"times":-1})");
    VXSampleLoginPanel panel(myContext, nullptr);
    panel.show();
    panel.findChild<QLineEdit*>(u"passwordEdit"_s)->setText(u"demo"_s);
    auto* const login = panel.findChild<QPushButton*>(u"loginButton"_s);
    int tries = 0;
    QTimer impatience; // of a customer who clicks and presses Return again and again
    connect(&impatience, &QTimer::timeout, &panel, [&] {
        ++tries;
        login->click();
        QTest::keyClick(panel.findChild<QLineEdit*>(u"passwordEdit"_s), Qt::Key_Return);
    });
    impatience.start(20);
    login->click();
    impatience.stop();
    control("DELETE /behaviour");

    QVERIFY(tries > 0);
    QCOMPARE(requestsTo(u"/oauth2/token"_s), 1);
    QCOMPARE(panel.findChild<QLabel*>(u"sessionState"_s)->text(), u"Sitzung: offen"_s);
    QVERIFY(login->isEnabled());
    QVERIFY(panel.findChild<QPushButton*>(u"logoutButton"_s)->isEnabled());
}

void tst_sample_panels::returnStartsNothingWhileThreadsRun()
{
    VXSampleHttpPanel panel(myContext, nullptr);
    panel.show();
    auto* const address = panel.findChild<QLineEdit*>(u"addressEdit"_s);
    address->setText(u"/slow?ms=500"_s);
    panel.findChild<QSpinBox*>(u"threadBox"_s)->setValue(2);
    int tries = 0;
    QTimer impatience;
    connect(&impatience, &QTimer::timeout, &panel, [&] {
        ++tries;
        QTest::keyClick(address, Qt::Key_Return);
        panel.findChild<QPushButton*>(u"uploadButton"_s)->click(); // would open a dialog
    });
    impatience.start(20);
    panel.findChild<QPushButton*>(u"sendButton"_s)->click();
    impatience.stop();

    QVERIFY(tries > 0);
    QCOMPARE(requestsTo(u"/slow"_s), 2);
    QVERIFY(panel.findChild<QPushButton*>(u"uploadButton"_s)->isEnabled());
}

VX_TEST_MAIN(QApplication, tst_sample_panels)

#include "tst_sample_panels.moc"
