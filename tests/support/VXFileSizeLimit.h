#pragma once

#include <QtCore/QtGlobal>

#include <csignal>
#include <sys/resource.h>

/// While it lives, no file of this process grows beyond a size: a write behind it fails, as on a
/// full disk.
class VXFileSizeLimit
{
    Q_DISABLE_COPY_MOVE(VXFileSizeLimit)

public:
    explicit VXFileSizeLimit(qint64 theBytes)
    {
        std::signal(SIGXFSZ, SIG_IGN); // else the first such write ends the process
        getrlimit(RLIMIT_FSIZE, &myFormer);
        const rlimit limit{static_cast<rlim_t>(theBytes), myFormer.rlim_max};
        setrlimit(RLIMIT_FSIZE, &limit);
    }
    ~VXFileSizeLimit() { setrlimit(RLIMIT_FSIZE, &myFormer); }

private:
    rlimit myFormer{};
};
