#include "VXNginxServer.h"

#include <QtCore/QDir>
#include <QtCore/QJsonDocument>

using namespace Qt::StringLiterals;

namespace {

QUrl urlOf(const QString& theScheme, quint16 thePort, const QString& thePath)
{
    return QUrl(u"%1://127.0.0.1:%2%3"_s.arg(theScheme, QString::number(thePort), thePath));
}

// One process, so that it is gone when it is killed. @...@ is filled in.
constexpr auto configurationTemplate = R"(
daemon off;
master_process off;
pid nginx.pid;
error_log stderr notice;
events { worker_connections 256; }
http {
    log_format record escape=json '{"port":$server_port,"connection":$connection,'
        '"request":$connection_requests,"method":"$request_method","uri":"$request_uri",'
        '"status":$status,"protocol":"$server_protocol","host":"$http_host",'
        '"agent":"$http_user_agent","connectionHeader":"$http_connection",'
        '"encoding":"$sent_http_content_encoding","received":$request_length,'
        '"sent":$body_bytes_sent}';
    access_log records record;
    client_body_temp_path temp/body;
    proxy_temp_path temp/proxy;
    fastcgi_temp_path temp/fastcgi;
    uwsgi_temp_path temp/uwsgi;
    scgi_temp_path temp/scgi;
    types { text/plain txt; text/html html; text/javascript js; application/json json; text/xml xml; }
    default_type application/octet-stream;
    gzip on;
    gzip_min_length 1;
    gzip_types application/json text/xml;
    server {
        listen 127.0.0.1:@plain@;
        listen 127.0.0.1:@tls@ ssl http2;
        ssl_certificate @certificate@;
        ssl_certificate_key @key@;
        root documents;
        location /upload/ { dav_methods PUT DELETE; client_max_body_size 0; }
        location /slow/ { alias documents/; limit_rate 100k; }
        location /small/ { dav_methods PUT; client_max_body_size 1024; }
    }
    server {
        listen 127.0.0.1:@asking@;
        auth_basic "Karte";
        auth_basic_user_file passwords;
        client_max_body_size 0;
        location / {
            proxy_pass http://127.0.0.1:@backend@;
            proxy_http_version 1.1;
            proxy_set_header Host $http_host;
            proxy_set_header Authorization "";
            proxy_buffering off;
        }
    }
}
)";

} // namespace

VXNginxServer::VXNginxServer(const VXTestCertificates::Identity& theIdentity)
    : VXForeignServer(u"nginx-light"_s, 3)
    , myIdentity(theIdentity)
{
    for (const QString& folder : {u"documents/upload"_s, u"documents/small"_s, u"temp"_s})
        QDir().mkpath(filePath(folder));
    writeFile(u"passwords"_s, QByteArray(user) + ":{PLAIN}" + password + '\n');
}

QUrl VXNginxServer::url(const QString& thePath) const
{
    return urlOf(u"http"_s, port(0), thePath);
}

QUrl VXNginxServer::tlsUrl(const QString& thePath) const
{
    return urlOf(u"https"_s, port(1), thePath);
}

QUrl VXNginxServer::askingUrl(const QString& thePath) const
{
    return urlOf(u"http"_s, port(2), thePath);
}

QString VXNginxServer::documentPath(const QString& thePath) const
{
    return filePath(u"documents/"_s + thePath);
}

void VXNginxServer::addDocument(const QString& thePath, const QByteArray& theContent) const
{
    writeFile(u"documents/"_s + thePath, theContent);
}

void VXNginxServer::linkDocument(const QString& thePath, const QString& theFile) const
{
    if (!QFile::link(theFile, documentPath(thePath)))
        qFatal("cannot link %s", qPrintable(documentPath(thePath)));
}

QList<QJsonObject> VXNginxServer::records() const
{
    QFile file(filePath(u"records"_s));
    QList<QJsonObject> result;
    if (!file.open(QIODevice::ReadOnly))
        return result;
    for (const QByteArray& line : file.readAll().split('\n')) {
        const QJsonObject record = QJsonDocument::fromJson(line).object();
        if (!record.isEmpty())
            result << record;
    }
    return result;
}

QStringList VXNginxServer::neededFiles() const
{
    return {u"/usr/sbin/nginx"_s};
}

VXForeignServer::Launch VXNginxServer::prepare()
{
    QFile::remove(filePath(u"records"_s));
    writeFile(u"nginx.conf"_s, configuration());
    return {u"/usr/sbin/nginx"_s,
            {u"-p"_s, filePath({}), u"-c"_s, filePath(u"nginx.conf"_s), u"-e"_s, u"stderr"_s}};
}

QByteArray VXNginxServer::configuration() const
{
    QByteArray text = configurationTemplate;
    text.replace("@plain@", QByteArray::number(port(0)));
    text.replace("@tls@", QByteArray::number(port(1)));
    text.replace("@asking@", QByteArray::number(port(2)));
    text.replace("@backend@", QByteArray::number(myBackend != 0 ? myBackend : port(0)));
    text.replace("@certificate@", myIdentity.certificateFile.toUtf8());
    text.replace("@key@", myIdentity.keyFile.toUtf8());
    return text;
}
