#include "VXVersionConfig.h"

#include "VXDeploymentConfig.h"

using namespace Qt::StringLiterals;

QString VXVersionConfig::versionString()
{
    return VXDeploymentConfig::instance()->text(u"Program/version"_s);
}
