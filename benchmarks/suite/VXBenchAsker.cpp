#include "VXBenchAsker.h"

#include <QtCore/QUrl>
#include <QtNetwork/QAuthenticator>

VXBenchAsker::VXBenchAsker() = default;

VXBenchAsker::~VXBenchAsker() = default;
