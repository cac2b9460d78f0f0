#include "VXTestMain.h"

#include <QtCore/QCoreApplication>
#include <QtCore/QFile>
#include <QtCore/QJsonDocument>
#include <QtCore/QJsonObject>
#include <QtCore/QProcess>
#include <QtCore/QRegularExpression>
#include <QtCore/QTemporaryDir>

using namespace Qt::StringLiterals;

/// Runs each command of the simulator's README exactly as it is printed there. The network
/// namespace of this test has the printed ports for itself.
class tst_simulator_readme : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void commandWorks_data();
    void commandWorks();
    void lastCommandEndedTheSimulator();

private:
    QTemporaryDir myFolder;
    QProcess mySimulator;
    QString myNames; // the lines that define $b and $c
};

namespace {

/// The commands in their order, from tables as well as from indented blocks.
QStringList commands(const QString& theReadme)
{
    static const QRegularExpression pattern(u"^    (curl .*)$|`(curl [^`]*)`"_s,
                                            QRegularExpression::MultilineOption);
    QStringList list;
    for (const auto& match : pattern.globalMatch(theReadme))
        list.append(match.captured(1) + match.captured(2));
    return list;
}

QString readme()
{
    QFile file(QStringLiteral(VX_SOURCE_DIR "/apps/vx-simulator/README.md"));
    return file.open(QFile::ReadOnly) ? QString::fromUtf8(file.readAll()) : QString();
}

/// curl's exit status: these addresses break their answers on purpose.
int expectedExitCode(const QString& theCommand)
{
    const std::pair<QString, int> faults[]{
        {u"/never"_s, 28}, {u"/reset"_s, 56}, {u"/truncate/"_s, 18}};
    for (const auto& [address, exitCode] : faults)
        if (theCommand.contains(address))
            return exitCode;
    return 0;
}

} // namespace

void tst_simulator_readme::initTestCase()
{
    static const QRegularExpression start(u"^    (vx-simulator --http .* &)\n    (b=.*)$"_s,
                                          QRegularExpression::MultilineOption);
    const auto match = start.match(readme());
    QVERIFY(match.hasMatch());
    myNames = match.captured(2);

    QVERIFY(QFile::copy(QStringLiteral(VX_SOURCE_DIR "/apps/vx-simulator/README.md"),
                        myFolder.filePath(u"README.md"_s)));
    QVERIFY(qputenv("PATH", QByteArray(VX_BINARY_DIR "/bin:") + qgetenv("PATH")));
    mySimulator.setWorkingDirectory(myFolder.path());
    mySimulator.start(u"bash"_s, {u"-c"_s, match.captured(1) + u"\nwait"_s});
    QTRY_VERIFY_WITH_TIMEOUT(mySimulator.canReadLine(), 30'000);
    const QJsonObject ready = QJsonDocument::fromJson(mySimulator.readLine()).object();
    QCOMPARE(ready.value(u"http"_s).toInt(), 8080);
    QCOMPARE(ready.value(u"https"_s).toObject().value(u"trusted"_s).toInt(), 8443);
}

void tst_simulator_readme::commandWorks_data()
{
    QTest::addColumn<QString>("command");

    const QStringList all = commands(readme());
    QVERIFY(all.size() >= 45); // the README has them in two forms
    QVERIFY(all.last().startsWith(u"curl -X POST $c/quit"_s));
    for (const QString& command : all)
        QTest::newRow(qPrintable(command)) << command;
}

void tst_simulator_readme::commandWorks()
{
    QFETCH(QString, command);
    QProcess shell;
    shell.setWorkingDirectory(myFolder.path());
    shell.start(u"bash"_s, {u"-c"_s, myNames + u'\n' + command});
    QVERIFY(shell.waitForFinished());
    QCOMPARE(shell.exitStatus(), QProcess::NormalExit);
    QCOMPARE(shell.exitCode(), expectedExitCode(command));
    // Only the example of a bad token is refused.
    const QByteArray output = shell.readAllStandardOutput();
    const bool isRefused = output.contains(R"("error":)");
    QVERIFY2(isRefused == command.contains(u"/oauth2/check"_s), output.constData());
}

void tst_simulator_readme::lastCommandEndedTheSimulator()
{
    QVERIFY(mySimulator.state() == QProcess::NotRunning || mySimulator.waitForFinished());
}

VX_TEST_MAIN(QCoreApplication, tst_simulator_readme)

#include "tst_simulator_readme.moc"
