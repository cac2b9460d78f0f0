#include "VXCommandLineParserAbstract.h"

VXCommandLineParserAbstract::VXCommandLineParserAbstract() = default;
VXCommandLineParserAbstract::~VXCommandLineParserAbstract() = default;
