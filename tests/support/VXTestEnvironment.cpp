#include "VXTestEnvironment.h"

#include <QtCore/QDir>

#include <array>

VXTestEnvironment::VXTestEnvironment()
{
    if (!myHome.isValid())
        qFatal("no temporary home folder: %s", qPrintable(myHome.errorString()));

    struct Folder
    {
        const char* variable;
        const char* name;
    };
    static constexpr std::array folders{
        Folder{"HOME", "home"},
        Folder{"XDG_CONFIG_HOME", "config"},
        Folder{"XDG_CACHE_HOME", "cache"},
        Folder{"XDG_DATA_HOME", "data"},
        Folder{"XDG_STATE_HOME", "state"},
        Folder{"XDG_RUNTIME_DIR", "run"},
    };
    for (const Folder& folder : folders) {
        const QString path = myHome.filePath(QLatin1StringView(folder.name));
        QDir().mkpath(path);
        QFile::setPermissions(path, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
        qputenv(folder.variable, path.toLocal8Bit());
    }

    for (const char* variable :
         {"http_proxy", "https_proxy", "all_proxy", "no_proxy", "HTTP_PROXY", "HTTPS_PROXY",
          "ALL_PROXY", "NO_PROXY", "VX_DEPLOYMENT_CONFIG", "LANGUAGE"})
        qunsetenv(variable);
    qputenv("LC_ALL", "C.UTF-8"); // the programs under test speak the language of the code

    if (!qEnvironmentVariableIsSet("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen:configfile=" VX_SOURCE_DIR "/tests/offscreen.json");
}

VXTestEnvironment::~VXTestEnvironment() = default;
