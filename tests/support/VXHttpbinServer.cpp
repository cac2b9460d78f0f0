#include "VXHttpbinServer.h"

using namespace Qt::StringLiterals;

VXHttpbinServer::VXHttpbinServer()
    : VXForeignServer(u"python3-httpbin"_s)
{
}

QUrl VXHttpbinServer::url(const QString& thePath) const
{
    return QUrl(u"http://127.0.0.1:%1%2"_s.arg(port()).arg(thePath));
}

QStringList VXHttpbinServer::neededFiles() const
{
    return {u"/usr/bin/python3"_s, u"/usr/lib/python3/dist-packages/httpbin/__init__.py"_s};
}

VXForeignServer::Launch VXHttpbinServer::prepare()
{
    const QString program = u"from httpbin import app\n"
                            "from werkzeug.serving import run_simple\n"
                            "run_simple('127.0.0.1', %1, app, threaded=True)\n"_s.arg(port());
    // Isolated: no module of the user's, nothing of the current folder.
    return {u"/usr/bin/python3"_s, {u"-I"_s, u"-B"_s, u"-c"_s, program}};
}
