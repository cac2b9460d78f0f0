#include "VXSquidServer.h"

#include <QtCore/QFile>

using namespace Qt::StringLiterals;

namespace {

const QString helper = u"/usr/lib/squid/digest_file_auth"_s;

} // namespace

VXSquidServer::VXSquidServer()
    : VXForeignServer(u"squid"_s)
{
}

QByteArray VXSquidServer::accessLog() const
{
    QFile file(filePath(u"access.log"_s));
    return file.open(QFile::ReadOnly) ? file.readAll() : QByteArray();
}

QStringList VXSquidServer::neededFiles() const
{
    return {u"/usr/sbin/squid"_s, helper};
}

VXForeignServer::Launch VXSquidServer::prepare()
{
    // Started by root it becomes the user "proxy", who must read and write here.
    QFile::setPermissions(filePath(u"."_s), QFile::Permissions(0x7777));
    writeFile(u"passwords"_s, QByteArray(user) + ':' + password + '\n');
    // It reads the names itself, and asks no name server for them.
    writeFile(u"squid.conf"_s,
              u"http_port 127.0.0.1:%1\n"
              "hosts_file %2/hosts\n"
              "dns_nameservers 127.0.0.1\n"
              "pid_filename none\n"
              "cache_log %2/cache.log\n"
              "access_log stdio:%2/access.log\n"
              "coredump_dir none\n"
              "cache deny all\n"
              "cache_mem 8 MB\n"
              "pinger_enable off\n"
              "visible_hostname localhost\n"
              "shutdown_lifetime 0 seconds\n"
              "auth_param digest program %3 %2/passwords\n"
              "auth_param digest children 1\n"
              "auth_param digest realm vx\n"
              "acl known proxy_auth REQUIRED\n"
              "http_access allow known\n"
              "http_access deny all\n"_s.arg(QString::number(port()), filePath(u"."_s), helper)
                  .toUtf8());
    return {u"/usr/sbin/squid"_s, {u"-N"_s, u"-f"_s, filePath(u"squid.conf"_s)}};
}
