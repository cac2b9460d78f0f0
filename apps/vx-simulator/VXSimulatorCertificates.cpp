#include "VXSimulatorCertificates.h"

#include <QtCore/QDateTime>
#include <QtCore/QDir>
#include <QtCore/QFile>
#include <QtCore/QProcess>
#include <QtCore/QTemporaryDir>
#include <QtNetwork/QSslCertificate>
#include <QtNetwork/QSslKey>
#include <QtNetwork/QSslSocket>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

constexpr int openSslTimeoutMs = 30'000;

/// One certificate: who signs it, whom it names, and when it is valid, in days from now.
struct Row
{
    const char* name;
    const char* authority;
    const char* subject;
    bool isForLoopback;
    int firstDay;
    int lastDay;
};

constexpr Row rows[]{
    {"trusted", "ca", "service.test", true, -1, 800},
    {"unknownCa", "unknown-authority", "service.test", true, -1, 800},
    {"expired", "ca", "service.test", true, -800, -1},
    {"notYet", "ca", "service.test", true, 365, 800},
    {"wrongHost", "ca", "elsewhere.invalid", false, -1, 800},
};

constexpr const char* authorities[]{"ca", "unknown-authority"};

/// Runs openssl in a folder; gives an error text, or an empty one.
QString run(const QString& theFolder, const QStringList& theArguments)
{
    QProcess process;
    process.setWorkingDirectory(theFolder);
    process.setProcessChannelMode(QProcess::MergedChannels);
    process.start(u"openssl"_s, theArguments);
    if (!process.waitForFinished(openSslTimeoutMs))
        return u"openssl does not run: "_s + process.errorString();
    if (process.exitStatus() != QProcess::NormalExit || process.exitCode() != 0)
        return u"openssl %1 failed: %2"_s.arg(theArguments.first(),
                                              QString::fromLocal8Bit(process.readAll()));
    return {};
}

bool write(const QString& thePath, const QString& theText)
{
    QFile file(thePath);
    return file.open(QFile::WriteOnly) && file.write(theText.toUtf8()) >= 0 && file.flush();
}

QString dateText(int theDay)
{
    return QDateTime::currentDateTimeUtc().addDays(theDay).toString(u"yyMMddHHmmss'Z'"_s);
}

QString configuration(const QString& theNames)
{
    return uR"([ca]
default_ca = authority
[authority]
new_certs_dir = .
database = index.txt
rand_serial = yes
default_md = sha256
policy = any
unique_subject = no
copy_extensions = none
x509_extensions = leaf
[any]
commonName = supplied
organizationName = optional
[req]
distinguished_name = subject
prompt = no
[subject]
[root]
basicConstraints = critical,CA:TRUE
keyUsage = critical,keyCertSign,cRLSign
subjectKeyIdentifier = hash
[leaf]
basicConstraints = critical,CA:FALSE
keyUsage = critical,digitalSignature
extendedKeyUsage = serverAuth
subjectAltName = %1
)"_s.arg(theNames);
}

QString makeAuthority(const QString& theWork, const QString& theName)
{
    return run(theWork, {u"req"_s,         u"-x509"_s,
                         u"-newkey"_s,     u"ec"_s,
                         u"-pkeyopt"_s,    u"ec_paramgen_curve:prime256v1"_s,
                         u"-nodes"_s,      u"-sha256"_s,
                         u"-days"_s,       u"3650"_s,
                         u"-config"_s,     u"openssl.cnf"_s,
                         u"-extensions"_s, u"root"_s,
                         u"-subj"_s,       u"/O=VX simulator/CN=VX simulator "_s + theName,
                         u"-keyout"_s,     theName + u".key"_s,
                         u"-out"_s,        theName + u".pem"_s});
}

QString makeLeaf(const QString& theWork, const Row& theRow, const QString& theNames)
{
    const QString name = QString::fromLatin1(theRow.name);
    const QString authority = QString::fromLatin1(theRow.authority);
    if (!write(theWork + u"/openssl.cnf"_s, configuration(theNames)))
        return u"cannot write to "_s + theWork;
    QString error = run(theWork, {u"req"_s, u"-new"_s, u"-newkey"_s, u"ec"_s, u"-pkeyopt"_s,
                                  u"ec_paramgen_curve:prime256v1"_s, u"-nodes"_s, u"-config"_s,
                                  u"openssl.cnf"_s, u"-subj"_s,
                                  u"/O=VX simulator/CN="_s + QString::fromLatin1(theRow.subject),
                                  u"-keyout"_s, name + u".key"_s, u"-out"_s, name + u".csr"_s});
    if (!error.isEmpty())
        return error;
    return run(theWork,
               {u"ca"_s, u"-batch"_s, u"-notext"_s, u"-config"_s, u"openssl.cnf"_s, u"-cert"_s,
                authority + u".pem"_s, u"-keyfile"_s, authority + u".key"_s, u"-startdate"_s,
                dateText(theRow.firstDay), u"-enddate"_s, dateText(theRow.lastDay), u"-in"_s,
                name + u".csr"_s, u"-out"_s, name + u".pem"_s});
}

QString alternativeNames(const Row& theRow, const QStringList& theHosts)
{
    if (!theRow.isForLoopback)
        return u"DNS:"_s + QString::fromLatin1(theRow.subject);
    QStringList names{u"DNS:localhost"_s, u"DNS:service.test"_s, u"DNS:*.service.test"_s,
                      u"IP:127.0.0.1"_s, u"IP:::1"_s};
    for (const QString& host : theHosts)
        names.append(u"DNS:"_s + host);
    names.removeDuplicates();
    return names.join(u',');
}

QString makeAll(const QString& theWork, const QStringList& theHosts)
{
    if (!write(theWork + u"/openssl.cnf"_s, configuration(u"DNS:localhost"_s)) ||
        !write(theWork + u"/index.txt"_s, {}))
        return u"cannot write to "_s + theWork;
    for (const char* authority : authorities)
        if (QString error = makeAuthority(theWork, QString::fromLatin1(authority));
            !error.isEmpty())
            return error;
    for (const Row& row : rows)
        if (QString error = makeLeaf(theWork, row, alternativeNames(row, theHosts));
            !error.isEmpty())
            return error;
    return {};
}

QStringList files()
{
    QStringList names;
    for (const char* authority : authorities)
        names << QString::fromLatin1(authority);
    for (const Row& row : rows)
        names << QString::fromLatin1(row.name);
    QStringList list;
    for (const QString& name : names)
        list << name + u".pem"_s << name + u".key"_s;
    return list;
}

} // namespace

QStringList VXSimulatorCertificates::names()
{
    QStringList list;
    for (const Row& row : rows)
        list << QString::fromLatin1(row.name);
    return list;
}

VXSimulatorCertificates::VXSimulatorCertificates(const QString& theFolder)
    : myFolder(QDir(theFolder).absolutePath())
{
}

QString VXSimulatorCertificates::path(const QString& theName) const
{
    return myFolder + u'/' + theName;
}

QString VXSimulatorCertificates::make(const QStringList& theHosts) const
{
    // Made beside and moved over when complete: a failure leaves no half set.
    QTemporaryDir work;
    if (!work.isValid() || !QDir().mkpath(myFolder))
        return u"cannot make the folder "_s + myFolder;
    if (QString error = makeAll(work.path(), theHosts); !error.isEmpty())
        return error;
    for (const QString& name : files()) {
        QFile::remove(path(name));
        if (!QFile::copy(work.filePath(name), path(name)) ||
            (name.endsWith(u".key"_s) &&
             !QFile::setPermissions(path(name), QFile::ReadOwner | QFile::WriteOwner)))
            return u"cannot write "_s + path(name);
    }
    return {};
}

bool VXSimulatorCertificates::isComplete() const
{
    const QStringList all = files();
    return std::all_of(all.begin(), all.end(),
                       [this](const QString& theName) { return QFile::exists(path(theName)); });
}

QString VXSimulatorCertificates::caFile() const
{
    return path(u"ca.pem"_s);
}

QSslConfiguration VXSimulatorCertificates::configuration(const QString& theName) const
{
    const auto certificates = QSslCertificate::fromPath(path(theName + u".pem"_s));
    QFile keyFile(path(theName + u".key"_s));
    QSslConfiguration configuration;
    if (certificates.isEmpty() || !keyFile.open(QFile::ReadOnly))
        return configuration;
    const QSslKey key(&keyFile, QSsl::Ec);
    if (key.isNull())
        return configuration;
    configuration.setLocalCertificateChain(certificates);
    configuration.setPrivateKey(key);
    configuration.setPeerVerifyMode(QSslSocket::VerifyNone);
    // Each client sees a whole handshake, also when it comes back.
    configuration.setSslOption(QSsl::SslOptionDisableSessionTickets, true);
    configuration.setSslOption(QSsl::SslOptionDisableSessionSharing, true);
    configuration.setSslOption(QSsl::SslOptionDisableSessionPersistence, true);
    return configuration;
}
