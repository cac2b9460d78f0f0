#include "VXFuzzTarget.h"

#include "VXCertificateBundle.h"

#include <VXNetworking/VXNetworkAccessManager.h>

#include <VXCore/VXDeploymentConfig.h>

#include <QtCore/QDateTime>
#include <QtCore/QFile>

using namespace Qt::StringLiterals;

namespace {

/// Without the system's certificates, of which each start would read hundreds.
VXNetworkAccessManager& manager()
{
    static VXNetworkAccessManager* const ourManager = [] {
        VXDeploymentConfig::instance()->setValue(u"Platform/platformCertificatesOnly"_s, u"true"_s);
        return VXNetworkAccessManager::threadInstance();
    }();
    return *ourManager;
}

} // namespace

/// The file of certificates that a deployment adds, and how a server's certificate is written out.
extern "C" int LLVMFuzzerTestOneInput(const uint8_t* theData, size_t theSize)
{
    VXFuzzTarget::prepare();
    const QString path = VXFuzzTarget::folder() + u"/bundle.pem"_s;
    QFile file(path);
    const QByteArray content = VXFuzzTarget::input(theData, theSize);
    VXFuzzTarget::check(file.open(QFile::WriteOnly) && file.write(content) == content.size(),
                        "room for a file");
    file.close();

    const QList<QSslCertificate> read = VXCertificateBundle::read(path);
    for (const QSslCertificate& certificate : read) {
        VXFuzzTarget::check(!certificate.isNull(), "no certificate is null");
        manager().printSslCertificate(certificate);
        VXFuzzTarget::saw("subject", certificate.subjectInfoAttributes().size());
        VXFuzzTarget::saw("serial", certificate.serialNumber().size());
        VXFuzzTarget::saw("day", certificate.effectiveDate().isValid());
    }
    const QList<QSslCertificate> list = VXCertificateBundle::merged({}, read);
    VXFuzzTarget::check(VXCertificateBundle::merged(list, list) == list, "each stands once");
    VXFuzzTarget::check(manager().removeInvalidCertificates(list).size() <= list.size(),
                        "none is invented");
    VXFuzzTarget::saw("read", read.size());
    VXFuzzTarget::saw("once", list.size());
    VXFuzzTarget::planted(list.size() == 1 && content.size() > 900 && content.size() < 1500);
    return 0;
}
