#include "VXProgramConfig.h"

#include "VXDeploymentConfig.h"

using namespace Qt::StringLiterals;

int VXProgramConfig::programID()
{
    return VXDeploymentConfig::instance()->number(u"Program/id"_s);
}

void VXProgramConfig::setProgramID(int theProgramId)
{
    VXDeploymentConfig::instance()->setValue(u"Program/id"_s, QString::number(theProgramId));
}
