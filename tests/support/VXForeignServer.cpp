#include "VXForeignServer.h"

#include <QtCore/QDeadlineTimer>
#include <QtCore/QDir>
#include <QtCore/QSet>
#include <QtNetwork/QTcpServer>
#include <QtTest/QTest>

#include <csignal>
#include <memory>
#include <vector>

#include <sys/prctl.h>

using namespace Qt::StringLiterals;

namespace {

// Another program may take a port between our release and the server's bind.
constexpr int attempts = 5;
constexpr std::chrono::seconds startTime{60}; // a loaded machine imports Python modules slowly

QString nssWrapper()
{
    const QDir libraries(u"/usr/lib"_s);
    for (const QString& folder : libraries.entryList({u"*-linux-gnu"_s}, QDir::Dirs)) {
        const QString path = libraries.filePath(folder + u"/libnss_wrapper.so"_s);
        if (QFile::exists(path))
            return path;
    }
    return u"/usr/lib/libnss_wrapper.so"_s;
}

QByteArray content(const QString& thePath)
{
    QFile file(thePath);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

/// Inodes of the sockets that listen on an IPv4 port, as texts.
QList<QByteArray> listenersOf(quint16 thePort, const QByteArray& theTable)
{
    const QByteArray port = ':' + QByteArray::number(thePort, 16).toUpper().rightJustified(4, '0');
    QList<QByteArray> inodes;
    for (const QByteArray& line : theTable.split('\n')) {
        // sl, local address, remote address, state (0A = listen), ..., inode as tenth field
        const QList<QByteArray> fields = line.simplified().split(' ');
        if (fields.size() > 9 && fields.at(1).endsWith(port) && fields.at(3) == "0A")
            inodes << fields.at(9);
    }
    return inodes;
}

} // namespace

VXForeignServer::VXForeignServer(const QString& thePackage, int thePortCount)
    : myPackage(thePackage)
    , myPortCount(thePortCount)
{
    myProcess.setProcessChannelMode(QProcess::MergedChannels);
    myProcess.setStandardOutputFile(filePath(u"output"_s), QIODevice::Append);
    myProcess.setChildProcessModifier([] { prctl(PR_SET_PDEATHSIG, SIGKILL); });
}

VXForeignServer::~VXForeignServer()
{
    stop();
}

bool VXForeignServer::start()
{
    stop();
    myErrorString.clear();
    if (!isComplete())
        return false;
    for (int i = 0; i < attempts; ++i) {
        if (startOnce())
            return true;
    }
    return false;
}

void VXForeignServer::stop()
{
    if (myProcess.state() == QProcess::NotRunning)
        return;
    myProcess.kill();
    myProcess.waitForFinished();
}

QByteArray VXForeignServer::output() const
{
    return content(filePath(u"output"_s));
}

void VXForeignServer::showOutputOnFailure() const
{
    if (QTest::currentTestFailed())
        qInfo("%s wrote:\n%s", qPrintable(myPackage), output().constData());
}

QString VXForeignServer::filePath(const QString& theName) const
{
    return myFolder.filePath(theName);
}

void VXForeignServer::writeFile(const QString& theName, const QByteArray& theContent) const
{
    QFile file(filePath(theName));
    if (!file.open(QIODevice::WriteOnly) || file.write(theContent) != theContent.size())
        qFatal("cannot write %s", qPrintable(file.fileName()));
}

bool VXForeignServer::isComplete()
{
    const auto complain = [this](const QString& theFile, const QString& thePackage) {
        if (myErrorString.isEmpty() && !QFile::exists(theFile))
            myErrorString = u"%1 is missing: install the package %2 (script/bootstrap does)"_s.arg(
                theFile, thePackage);
    };
    for (const QString& file : neededFiles())
        complain(file, myPackage);
    if (!myHostNames.isEmpty())
        complain(nssWrapper(), u"libnss-wrapper"_s);
    return myErrorString.isEmpty();
}

bool VXForeignServer::startOnce()
{
    choosePorts();
    const Launch launch = prepare();

    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    for (auto entry = launch.environment.begin(); entry != launch.environment.end(); ++entry)
        environment.insert(entry.key(), entry.value());
    addNameResolution(environment);
    myProcess.setProcessEnvironment(environment);
    myProcess.setWorkingDirectory(myFolder.path());
    myProcess.start(launch.program, launch.arguments, QIODevice::ReadOnly);
    if (waitUntilListening())
        return true;

    myErrorString = u"%1 (package %2) did not start: %3\n%4"_s.arg(
        launch.program, myPackage, myProcess.errorString(), QString::fromUtf8(output()));
    stop();
    return false;
}

void VXForeignServer::choosePorts()
{
    // All at once, so that they differ; and none twice in a process, for what the library or Qt
    // remembers about an address must not reach the next server.
    static QSet<quint16> used;
    std::vector<std::unique_ptr<QTcpServer>> holders;
    myPorts.clear();
    while (myPorts.size() < myPortCount) {
        holders.push_back(std::make_unique<QTcpServer>());
        if (!holders.back()->listen(QHostAddress::LocalHost))
            qFatal("no free port: %s", qPrintable(holders.back()->errorString()));
        const quint16 port = holders.back()->serverPort();
        if (!used.contains(port))
            myPorts << port;
        used << port;
    }
}

void VXForeignServer::addNameResolution(QProcessEnvironment& theEnvironment) const
{
    if (myHostNames.isEmpty())
        return;
    QByteArray hosts;
    for (const QString& name : myHostNames)
        hosts += "127.0.0.1 " + name.toLatin1() + '\n';
    writeFile(u"hosts"_s, hosts);
    theEnvironment.insert(u"LD_PRELOAD"_s, nssWrapper());
    theEnvironment.insert(u"NSS_WRAPPER_HOSTS"_s, filePath(u"hosts"_s));
}

bool VXForeignServer::waitUntilListening()
{
    if (!myProcess.waitForStarted())
        return false;
    const QDeadlineTimer deadline(startTime);
    const auto allListen = [this] {
        return std::ranges::all_of(myPorts, [this](quint16 port) { return listens(port); });
    };
    while (!deadline.hasExpired() && myProcess.state() == QProcess::Running) {
        if (allListen())
            return true;
        myProcess.waitForFinished(20); // the other thing that may happen; ends at once then
    }
    return false;
}

/// Asks the kernel instead of connecting: after a clash, somebody else would accept.
bool VXForeignServer::listens(quint16 thePort) const
{
    const QString process = u"/proc/%1"_s.arg(processId());
    const QList<QByteArray> inodes = listenersOf(thePort, content(process + u"/net/tcp"_s));
    if (inodes.isEmpty())
        return false;
    const QDir descriptors(process + u"/fd"_s);
    for (const QString& name : descriptors.entryList(QDir::Files | QDir::System)) {
        char target[64] = {};
        const QByteArray link = descriptors.filePath(name).toLocal8Bit();
        const ssize_t size = readlink(link.constData(), target, sizeof target - 1);
        const QByteArray text(target, qMax<ssize_t>(size, 0));
        if (text.startsWith("socket:[") && inodes.contains(text.sliced(8).chopped(1)))
            return true;
    }
    return false;
}
