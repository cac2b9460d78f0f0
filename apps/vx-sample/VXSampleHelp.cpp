#include "VXSampleHelp.h"

#include "VXSampleCommand.h"
#include "VXSampleCommandTable.h"
#include "VXSampleOptions.h"

#include <VXCore/VXCommandLineParser.h>

#include <QtCore/QCommandLineParser>

using namespace Qt::StringLiterals;

namespace {

/// The options as Qt lays them out, without its usage line, which needs an application object.
QString optionsText(const QCommandLineParser& theParser)
{
    const QString text = theParser.helpText();
    return text.sliced(text.indexOf(u'\n') + 1).trimmed();
}

QString usageLine(const VXSampleCommandRow& theRow)
{
    return u"vx-sample [OPTIONS] %1 %2"_s.arg(theRow.name, theRow.arguments);
}

} // namespace

QString VXSampleHelp::overview()
{
    QStringList lines{u"Usage: vx-sample [OPTIONS] COMMAND [ARGUMENTS]"_s,
                      QString(),
                      u"The sample host of VXNetworking. Results and events are JSON objects, one "
                      "per line, on"_s,
                      u"standard output; texts for people go to standard error."_s,
                      QString(),
                      u"Commands:"_s};
    for (const VXSampleCommandRow& row : VXSampleCommandTable::rows()) {
        lines << u"  "_s + u"%1 %2"_s.arg(row.name, row.arguments).trimmed()
              << u"      %1"_s.arg(row.help) << u"      Example: vx-sample %1"_s.arg(row.example);
    }

    VXCommandLineParser parser;
    VXSampleOptions::addTo(parser);
    lines << QString() << optionsText(parser.parser()) << QString()
          << u"Exit status: 0 success, 1 the library reported an error, 2 wrong usage, "
             "3 environment,"_s
          << u"4 time-out, 5 a check of the tour failed."_s;
    return lines.join(u'\n');
}

QString VXSampleHelp::command(const VXSampleCommandRow& theRow)
{
    QCommandLineParser parser;
    parser.addOption({{u"h"_s, u"help"_s}, u"Show this help."_s});
    theRow.create()->addOptions(parser);
    return QStringList{u"Usage: %1"_s.arg(usageLine(theRow)),
                       QString(),
                       theRow.help,
                       QString(),
                       optionsText(parser),
                       QString(),
                       u"Example: vx-sample %1"_s.arg(theRow.example)}
        .join(u'\n');
}
