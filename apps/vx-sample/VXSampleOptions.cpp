#include "VXSampleOptions.h"

#include <VXCore/VXCommandLineParser.h>
#include <VXCore/VXInitializer.h>

#include <QtCore/QCommandLineParser>
#include <QtCore/QFile>
#include <QtCore/QFileInfo>

using namespace Qt::StringLiterals;

void VXSampleOptions::addTo(VXCommandLineParser& theParser)
{
    QCommandLineParser& parser = theParser.parser();
    // What stands behind the command belongs to the command.
    parser.setOptionsAfterPositionalArgumentsMode(QCommandLineParser::ParseAsPositionalArguments);
    parser.addOptions({
        {{u"h"_s, u"help"_s}, u"Show this help; after a command, the help for that command."_s},
        {{u"v"_s, u"version"_s}, u"Show the version."_s},
        {u"config"_s, u"Read the deployment file FILE last."_s, u"FILE"_s},
        {u"settings"_s, u"Keep the user's settings in FILE."_s, u"FILE"_s},
        {u"assets"_s, u"Take pages, icons and style from DIR."_s, u"DIR"_s},
        {u"temp"_s, u"Put temporary files into DIR."_s, u"DIR"_s},
        {u"log-dir"_s, u"Write the log files into DIR."_s, u"DIR"_s},
        {u"language"_s, u"Use the language TAG (BCP 47)."_s, u"TAG"_s},
        {u"simulator"_s,
         u"auto: start the embedded service when a command needs it (default); none: never; "
         "READYFILE: use the running one that wrote this file."_s,
         u"auto|none|READYFILE"_s, u"auto"_s},
        {u"answers"_s, u"Answer the library's questions from FILE (JSON list)."_s, u"FILE"_s},
        {u"opener"_s, u"Open addresses with PROGRAM instead of the browser."_s, u"PROGRAM"_s},
        {u"offscreen"_s, u"Work without a display."_s},
        {u"exit-after"_s, u"End the command after SECONDS."_s, u"SECONDS"_s},
        {u"master"_s, u"Run in developer mode."_s},
        {u"program-id"_s, u"Run as program number N (8: no web content)."_s, u"N"_s},
    });
    VXInitializer::instance()->runCommandLine(&theParser);
}

VXSampleOptions VXSampleOptions::fromParser(const QCommandLineParser& theParser)
{
    VXSampleOptions options;
    options.config = options.readableFile(theParser, u"config"_s);
    options.answers = options.readableFile(theParser, u"answers"_s);
    options.settings = theParser.value(u"settings"_s);
    options.assets = theParser.value(u"assets"_s);
    options.temp = theParser.value(u"temp"_s);
    options.logDir = theParser.value(u"log-dir"_s);
    options.language = theParser.value(u"language"_s);
    options.simulator = theParser.value(u"simulator"_s);
    options.opener = theParser.value(u"opener"_s);
    options.offscreen = theParser.isSet(u"offscreen"_s);
    options.master = theParser.isSet(u"master"_s);
    options.exitAfter = options.number(theParser, u"exit-after"_s);
    options.programId = options.number(theParser, u"program-id"_s);

    if (!options.assets.isEmpty() && !QFileInfo(options.assets).isDir())
        options.refuse(u"--assets: there is no folder \"%1\""_s.arg(options.assets));
    return options;
}

QList<QPair<QString, QString>> VXSampleOptions::deploymentValues() const
{
    QList<QPair<QString, QString>> values{
        {u"Paths/settingsFile"_s, settings},
        {u"Paths/temporaryDirectory"_s, temp},
        {u"Paths/logFolder"_s, logDir},
        {u"Program/language"_s, language},
        {u"Platform/urlOpener"_s, opener},
        {u"Program/masterMode"_s, master ? u"true"_s : QString()},
    };
    if (programId)
        values << qMakePair(u"Program/id"_s, QString::number(*programId));
    if (!assets.isEmpty()) {
        values << qMakePair(u"Assets/bookProposals"_s, assets + u"/bookproposals"_s)
               << qMakePair(u"Assets/html"_s, assets + u"/html"_s)
               << qMakePair(u"Assets/icons"_s, assets + u"/icons"_s)
               << qMakePair(u"Assets/oAuthSupport"_s, assets + u"/oauth"_s)
               << qMakePair(u"Assets/qrUpload"_s, assets + u"/qrupload"_s)
               << qMakePair(u"Assets/skin"_s, assets + u"/skin.qss"_s)
               << qMakePair(u"Assets/startScreen"_s, assets + u"/startscreen/html"_s);
    }
    values.removeIf(
        [](const QPair<QString, QString>& theValue) { return theValue.second.isEmpty(); });
    return values;
}

/// Keeps the first complaint only: the later ones often follow from it.
void VXSampleOptions::refuse(const QString& theText)
{
    if (myErrorText.isEmpty())
        myErrorText = theText;
}

std::optional<int> VXSampleOptions::number(const QCommandLineParser& theParser,
                                           const QString& theName)
{
    if (!theParser.isSet(theName))
        return std::nullopt;

    bool isNumber = false;
    const int value = theParser.value(theName).toInt(&isNumber);
    if (!isNumber || value < 0) {
        refuse(
            u"--%1: \"%2\" is not a number of 0 or more"_s.arg(theName, theParser.value(theName)));
        return std::nullopt;
    }
    return value;
}

QString VXSampleOptions::readableFile(const QCommandLineParser& theParser, const QString& theName)
{
    QString path = theParser.value(theName);
    if (path.isEmpty() && !theParser.isSet(theName))
        return {};

    QFile file(path);
    if (QFileInfo(path).isDir() || !file.open(QIODevice::ReadOnly))
        refuse(u"--%1: cannot read \"%2\": %3"_s.arg(
            theName, path, QFileInfo(path).isDir() ? u"it is a folder"_s : file.errorString()));
    return path;
}
