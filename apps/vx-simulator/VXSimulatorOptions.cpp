#include "VXSimulatorOptions.h"

#include "VXSimulatorNamespace.h"

#include <QtCore/QCommandLineParser>

using namespace Qt::StringLiterals;

namespace {

constexpr double longestRunSeconds = 7 * 24 * 3600;

void addOptions(QCommandLineParser& theParser)
{
    theParser.setApplicationDescription(
        u"Answers on the loopback as the photo service does, faults included."_s);
    theParser.addPositionalArgument(
        u"make-certs DIR"_s, u"Only make the certificates in a folder."_s, u"[make-certs DIR]"_s);
    theParser.addOptions({
        {u"bind"_s, u"Loopback address to listen on (127.0.0.1)."_s, u"ADDR"_s, u"127.0.0.1"_s},
        {u"allow-namespace"_s,
         u"Admit any address to --bind in a network namespace without default route."_s},
        {u"http"_s, u"HTTP port; 0 picks a free one."_s, u"PORT"_s, u"0"_s},
        {u"https"_s, u"HTTPS port with the trusted certificate."_s, u"PORT"_s, u"0"_s},
        {u"proxy"_s, u"Port of the HTTP proxy."_s, u"PORT"_s, u"0"_s},
        {u"socks"_s, u"Port of the SOCKS5 proxy."_s, u"PORT"_s, u"0"_s},
        {u"control"_s, u"Control port."_s, u"PORT"_s, u"0"_s},
        {u"certs"_s, u"Folder of the certificates; missing ones are made."_s, u"DIR"_s},
        {u"scenario"_s, u"JSON file with users, passwords and behaviours."_s, u"FILE"_s},
        {u"ready-file"_s, u"Write the ready object there, too."_s, u"FILE"_s},
        {u"exit-after"_s, u"End after so many seconds."_s, u"SECONDS"_s},
        {u"idle"_s, u"Cut connections on which nothing moves for so long (300)."_s, u"SECONDS"_s},
        {u"quiet"_s, u"No line per request on standard error."_s},
        {{u"h"_s, u"help"_s}, u"Show this help."_s},
    });
}

quint16 port(const QCommandLineParser& theParser, const QString& theName, QString& theError)
{
    bool isNumber = false;
    const uint value = theParser.value(theName).toUInt(&isNumber);
    if (!isNumber || value > 65535)
        theError = u"--%1: \"%2\" is no port"_s.arg(theName, theParser.value(theName));
    return static_cast<quint16>(value);
}

QHostAddress bindAddress(const QCommandLineParser& theParser, QString& theError)
{
    const QHostAddress address(theParser.value(u"bind"_s));
    if (address.isNull())
        theError = u"--bind: \"%1\" is no address"_s.arg(theParser.value(u"bind"_s));
    else if (!address.isLoopback() && !theParser.isSet(u"allow-namespace"_s))
        theError = u"--bind: only loopback addresses are admitted"_s;
    else if (!address.isLoopback() && VXSimulatorNamespace::hasDefaultRoute())
        theError = u"--allow-namespace: there is a default route here"_s;
    return address;
}

/// An option of seconds in milliseconds; the default unless it is given.
int milliseconds(const QCommandLineParser& theParser, const QString& theName, int theDefault,
                 QString& theError)
{
    if (!theParser.isSet(theName))
        return theDefault;
    bool isNumber = false;
    const double seconds = theParser.value(theName).toDouble(&isNumber);
    if (isNumber && seconds > 0 && seconds <= longestRunSeconds)
        return std::max(1, static_cast<int>(seconds * 1000));
    theError = u"--%1: \"%2\" is no number of seconds"_s.arg(theName, theParser.value(theName));
    return theDefault;
}

void readCommand(const QStringList& theWords, VXSimulatorOptions& theOptions)
{
    if (theWords.isEmpty())
        return;
    if (theWords.first() != u"make-certs"_s)
        theOptions.error = u"unknown command \"%1\""_s.arg(theWords.first());
    else if (theWords.size() != 2 || theWords.last().isEmpty())
        theOptions.error = u"make-certs needs one folder"_s;
    else
        theOptions.certificatesToMake = theWords.last();
}

} // namespace

VXSimulatorOptions VXSimulatorOptions::fromArguments(const QStringList& theArguments)
{
    QCommandLineParser parser;
    addOptions(parser);
    VXSimulatorOptions options;
    if (!parser.parse(theArguments)) {
        options.error = parser.errorText();
        return options;
    }
    options.isHelpWanted = parser.isSet(u"help"_s);
    options.helpText = parser.helpText();
    options.isQuiet = parser.isSet(u"quiet"_s);
    options.scenarioFile = parser.value(u"scenario"_s);
    options.readyFile = parser.value(u"ready-file"_s);
    options.setup.certificates = parser.value(u"certs"_s);
    options.setup.http = port(parser, u"http"_s, options.error);
    options.setup.https = port(parser, u"https"_s, options.error);
    options.setup.proxy = port(parser, u"proxy"_s, options.error);
    options.setup.socks = port(parser, u"socks"_s, options.error);
    options.setup.control = port(parser, u"control"_s, options.error);
    options.setup.bind = bindAddress(parser, options.error);
    options.exitAfterMs = milliseconds(parser, u"exit-after"_s, 0, options.error);
    auto& idle = options.setup.limits.idle;
    idle = std::chrono::milliseconds(
        milliseconds(parser, u"idle"_s, static_cast<int>(idle.count()), options.error));
    readCommand(parser.positionalArguments(), options);
    return options;
}
