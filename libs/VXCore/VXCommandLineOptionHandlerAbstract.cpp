#include "VXCommandLineOptionHandlerAbstract.h"

VXCommandLineOptionHandlerAbstract::VXCommandLineOptionHandlerAbstract() = default;
VXCommandLineOptionHandlerAbstract::~VXCommandLineOptionHandlerAbstract() = default;
