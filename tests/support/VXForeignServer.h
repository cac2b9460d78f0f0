#pragma once

#include <QtCore/QHash>
#include <QtCore/QProcess>
#include <QtCore/QStringList>
#include <QtCore/QTemporaryDir>

/// A server program of the distribution that lives as long as this object.
///
/// The system chooses its ports, its files lie in a temporary folder of its own, and it dies with
/// the thread that started it, even when the test is killed. Use it in one thread.
class VXForeignServer
{
    Q_DISABLE_COPY_MOVE(VXForeignServer)

public:
    virtual ~VXForeignServer();

    /// Starts the program and returns when it listens on all its ports. A second call stops it
    /// first. When false, errorString() says why.
    [[nodiscard]] bool start();
    void stop();

    /// The reason with the Debian package that is missing, or with what the program wrote.
    [[nodiscard]] QString errorString() const { return myErrorString; }
    /// What the program has written so far.
    [[nodiscard]] QByteArray output() const;
    /// Shows output() in the log of the test when the current test function has failed; for the
    /// cleanup function of a test.
    void showOutputOnFailure() const;

    [[nodiscard]] qint64 processId() const { return myProcess.processId(); }
    /// 0 before the first start; chosen anew by each.
    [[nodiscard]] quint16 port(int theIndex = 0) const { return myPorts.value(theIndex); }

    /// Names that this server resolves to 127.0.0.1 and nobody else resolves. Before start().
    void setHostNames(const QStringList& theNames) { myHostNames = theNames; }

protected:
    struct Launch
    {
        QString program; // absolute path
        QStringList arguments;
        QHash<QString, QString> environment = {}; // beside the test's own
    };

    explicit VXForeignServer(const QString& thePackage, int thePortCount = 1);

    /// Files without which the program can't run, absolute.
    [[nodiscard]] virtual QStringList neededFiles() const = 0;
    /// Writes what the program reads; ports are chosen by now, and the folder exists.
    [[nodiscard]] virtual Launch prepare() = 0;

    [[nodiscard]] QString filePath(const QString& theName) const;
    /// Ends the test program when the file can't be written.
    void writeFile(const QString& theName, const QByteArray& theContent) const;

private:
    [[nodiscard]] bool isComplete();
    [[nodiscard]] bool startOnce();
    [[nodiscard]] bool waitUntilListening();
    [[nodiscard]] bool listens(quint16 thePort) const;
    void choosePorts();
    void addNameResolution(QProcessEnvironment& theEnvironment) const;

    const QString myPackage;
    const int myPortCount;
    QTemporaryDir myFolder;
    QStringList myHostNames;
    QList<quint16> myPorts;
    QProcess myProcess;
    QString myErrorString;
};
