#include "VXTestCertificates.h"

#include <QtCore/QFile>
#include <QtCore/QProcess>

using namespace Qt::StringLiterals;

namespace {

QByteArray content(const QString& thePath)
{
    QFile file(thePath);
    if (!file.open(QIODevice::ReadOnly))
        qFatal("cannot read %s", qPrintable(thePath));
    return file.readAll();
}

void write(const QString& thePath, const QByteArray& theContent)
{
    QFile file(thePath);
    if (!file.open(QIODevice::WriteOnly) || file.write(theContent) != theContent.size())
        qFatal("cannot write %s", qPrintable(thePath));
}

QString asn1Time(const QDateTime& theTime)
{
    return theTime.toUTC().toString(u"yyyyMMddHHmmss'Z'"_s);
}

} // namespace

VXTestCertificates::VXTestCertificates()
{
    Order order;
    order.subject = u"/C=DE/O=VX Test/CN=VX Test Authority"_s;
    order.alternativeNames.clear();
    order.isAuthority = true;
    myAuthority = sign(order, true);
}

VXTestCertificates::Identity VXTestCertificates::issue(const Order& theOrder)
{
    return sign(theOrder, theOrder.isSelfSigned);
}

VXTestCertificates::Identity VXTestCertificates::selfSigned()
{
    Order order;
    order.isSelfSigned = true;
    return issue(order);
}

VXTestCertificates::Identity VXTestCertificates::expired()
{
    Order order;
    order.from = QDateTime::currentDateTimeUtc().addDays(-10);
    order.to = QDateTime::currentDateTimeUtc().addDays(-1);
    return issue(order);
}

VXTestCertificates::Identity VXTestCertificates::notYetValid()
{
    Order order;
    order.from = QDateTime::currentDateTimeUtc().addDays(1);
    return issue(order);
}

VXTestCertificates::Identity VXTestCertificates::blacklisted()
{
    Order order;
    order.subject = u"/CN=mail.google.com"_s;
    order.serial = u"047ECBE9FCA55F7BD09EAE36E10CAE1E"_s;
    return issue(order);
}

VXTestCertificates::Identity VXTestCertificates::sign(const Order& theOrder, bool theIsSelfSigned)
{
    const QString base = myFolder.filePath(QString::number(++myCount));
    const QString key = base + u".key"_s;
    const QString request = base + u".csr"_s;
    const QString certificate = base + u".pem"_s;
    const QString configuration = base + u".cnf"_s;
    writeConfiguration(configuration, theOrder);

    run({u"req"_s, u"-new"_s, u"-newkey"_s, u"ec"_s, u"-pkeyopt"_s,
         u"ec_paramgen_curve:prime256v1"_s, u"-nodes"_s, u"-config"_s, configuration, u"-subj"_s,
         theOrder.subject, u"-utf8"_s, u"-keyout"_s, key, u"-out"_s, request});
    // "ca" and not "x509": it alone takes both dates.
    QStringList arguments{u"ca"_s,         u"-batch"_s,
                          u"-notext"_s,    u"-preserveDN"_s,
                          u"-config"_s,    configuration,
                          u"-startdate"_s, asn1Time(theOrder.from),
                          u"-enddate"_s,   asn1Time(theOrder.to),
                          u"-in"_s,        request,
                          u"-out"_s,       certificate};
    if (theIsSelfSigned)
        arguments << u"-selfsign"_s << u"-keyfile"_s << key;
    else
        arguments << u"-cert"_s << myAuthority.certificateFile << u"-keyfile"_s
                  << myAuthority.keyFile;
    run(arguments);

    return {QSslCertificate(content(certificate)), QSslKey(content(key), QSsl::Ec), certificate,
            key};
}

void VXTestCertificates::writeConfiguration(const QString& thePath, const Order& theOrder) const
{
    const QString base = thePath.chopped(4);
    const QString serial = theOrder.serial.isEmpty()
                               ? u"10%1"_s.arg(myCount, 4, 10, QLatin1Char('0'))
                               : theOrder.serial;
    write(base + u".serial"_s, serial.toLatin1() + '\n');
    write(base + u".index"_s, {});

    const QString extensions =
        theOrder.isAuthority
            ? u"basicConstraints=critical,CA:TRUE\nkeyUsage=keyCertSign,cRLSign\n"_s
            : u"basicConstraints=CA:FALSE\n"_s;
    const QString names = theOrder.alternativeNames.isEmpty()
                              ? QString()
                              : u"subjectAltName="_s + theOrder.alternativeNames.join(u',') + u'\n';
    write(thePath,
          u"[ca]\ndefault_ca=own\n"
          "[own]\ndatabase=%1.index\nserial=%1.serial\nnew_certs_dir=%2\ndefault_md=sha256\n"
          "policy=any\nx509_extensions=extensions\nunique_subject=no\n"
          "[any]\ncountryName=optional\nstateOrProvinceName=optional\n"
          "localityName=optional\norganizationName=optional\n"
          "organizationalUnitName=optional\ncommonName=optional\n"
          "[extensions]\n%3%4"
          "[req]\ndistinguished_name=none\nprompt=no\n[none]\n"_s
              .arg(base, myFolder.path(), extensions, names)
              .toUtf8());
}

void VXTestCertificates::run(const QStringList& theArguments) const
{
    QProcess process;
    process.setWorkingDirectory(myFolder.path());
    process.start(u"openssl"_s, theArguments);
    if (!process.waitForFinished() || process.exitCode() != 0)
        qFatal("openssl %s: %s", qPrintable(theArguments.join(u' ')),
               process.readAllStandardError().constData());
}
