#pragma once

#include <QtCore/QUrl>
#include <QtNetwork/QTcpServer>

/// Accepts connections and requests, and never says a word. Costs no processor time: the kernel
/// does the little that there is to do.
class VXStalledServer
{
    Q_DISABLE_COPY_MOVE(VXStalledServer)

public:
    VXStalledServer();

    [[nodiscard]] QUrl url() const;

private:
    QTcpServer myServer;
};
