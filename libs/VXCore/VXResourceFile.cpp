#include "VXResourceFile.h"

#include "VXDeploymentConfig.h"

using namespace Qt::StringLiterals;

VXResourceFile::VXResourceFile(VXResourceFileTypeEnum theType)
    : myType(theType)
{
}

QFileInfo VXResourceFile::fileInfo() const
{
    if (myType != ResourceFileCaBundle)
        return {};
    return QFileInfo(VXDeploymentConfig::instance()->text(u"Resources/caBundle"_s));
}
