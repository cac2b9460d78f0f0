#include "VXKeyAccount.h"

#include "VXDeploymentConfig.h"

using namespace Qt::StringLiterals;

VXKeyAccount::VXKeyAccount() = default;
VXKeyAccount::~VXKeyAccount() = default;

bool VXKeyAccount::isGeneric() const
{
    return VXDeploymentConfig::instance()->isEnabled(u"KeyAccount/generic"_s);
}

void VXKeyAccount::setGeneric(bool theIsGeneric)
{
    VXDeploymentConfig::instance()->setValue(u"KeyAccount/generic"_s,
                                             theIsGeneric ? u"true"_s : u"false"_s);
}

QString VXKeyAccount::name() const
{
    return VXDeploymentConfig::instance()->text(u"KeyAccount/name"_s);
}

QString VXKeyAccount::logoFile() const
{
    return VXDeploymentConfig::instance()->text(u"KeyAccount/logo"_s);
}
