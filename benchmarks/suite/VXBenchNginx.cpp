#include "VXBenchNginx.h"

#include <QtCore/QDir>

using namespace Qt::StringLiterals;

namespace {

// One process, so that it is gone when it is killed. @...@ is filled in.

constexpr auto configurationTemplate = R"(
daemon off;
master_process off;
pid nginx.pid;
error_log stderr error;
events { worker_connections 512; }
http {
    access_log off;
    keepalive_requests 1000000000;
    keepalive_timeout 1h;
    sendfile on;
    tcp_nopush on;
    client_body_temp_path temp/body;
    proxy_temp_path temp/proxy;
    fastcgi_temp_path temp/fastcgi;
    uwsgi_temp_path temp/uwsgi;
    scgi_temp_path temp/scgi;
    default_type application/octet-stream;
    server {
        listen @address@:@plain@;
        listen @address@:@tls@ ssl;
        ssl_certificate @certificate@;
        ssl_certificate_key @key@;
        root documents;
        error_page 404 /missing.html;
        location = /missing.html { internal; }
        location = /json { default_type application/json; return 200 '@json@'; }
        location /upload/ { dav_methods PUT; client_max_body_size 0; }
    }
}
)";

} // namespace

VXBenchNginx::VXBenchNginx(const VXTestCertificates::Identity& theIdentity)
    : VXForeignServer(u"nginx-light"_s, 2)
    , myIdentity(theIdentity)
{
    for (const QString& folder : {u"documents/upload"_s, u"temp"_s})
        QDir().mkpath(filePath(folder));
    addDocument(u"missing.html"_s, missing());
}

QUrl VXBenchNginx::url(const QString& thePath) const
{
    return QUrl(u"http://%1:%2%3"_s.arg(myAddress, QString::number(port(0)), thePath));
}

QUrl VXBenchNginx::tlsUrl(const QString& thePath) const
{
    return QUrl(u"https://%1:%2%3"_s.arg(myAddress, QString::number(port(1)), thePath));
}

QString VXBenchNginx::documentPath(const QString& thePath) const
{
    return filePath(u"documents/"_s + thePath);
}

void VXBenchNginx::addDocument(const QString& thePath, const QByteArray& theContent) const
{
    writeFile(u"documents/"_s + thePath, theContent);
}

QByteArray VXBenchNginx::json()
{
    const QByteArray frame = R"({"status":"ok","count":17,"items":["a","b","c"],"text":"@"})";
    return QByteArray(frame).replace('@', QByteArray(500 - frame.size() + 1, 'x'));
}

QByteArray VXBenchNginx::missing()
{
    return QByteArray("<p>Nicht gefunden</p>\n").repeated(1000).first(10 * 1024);
}

QStringList VXBenchNginx::neededFiles() const
{
    return {u"/usr/sbin/nginx"_s};
}

VXForeignServer::Launch VXBenchNginx::prepare()
{
    QByteArray text = configurationTemplate;
    text.replace("@address@", myAddress.toUtf8());
    text.replace("@plain@", QByteArray::number(port(0)));
    text.replace("@tls@", QByteArray::number(port(1)));
    text.replace("@certificate@", myIdentity.certificateFile.toUtf8());
    text.replace("@key@", myIdentity.keyFile.toUtf8());
    text.replace("@json@", json());
    writeFile(u"nginx.conf"_s, text);
    return {u"/usr/sbin/nginx"_s,
            {u"-p"_s, filePath({}), u"-c"_s, filePath(u"nginx.conf"_s), u"-e"_s, u"stderr"_s}};
}
