#include "VXSampleMessageCommand.h"

#include "VXSampleContext.h"
#include "VXSampleErrorJson.h"
#include "VXSampleOutput.h"

#include <VXNetworking/VXNetworkingError.h>
#include <VXNetworking/VXNetworkingErrorMessageMap.h>

#include <QtCore/QCommandLineParser>
#include <QtCore/QJsonArray>
#include <QtCore/QRegularExpression>

using namespace Qt::StringLiterals;

namespace {

/// The codes of the table, read from its own dump: "Code:   70  => text".
QList<int> codesOfTable()
{
    static const QRegularExpression line(u"^Code: +(\\d+)  => "_s,
                                         QRegularExpression::MultilineOption);
    const QString dump = VXNetworkingErrorMessageMap().messagesDump();
    QList<int> codes;
    for (const QRegularExpressionMatch& match : line.globalMatch(dump))
        codes << match.captured(1).toInt();
    return codes;
}

QString readableLine(const VXNetworkingError& theError)
{
    return u"%1  %2  %3"_s.arg(QString::number(theError.errorCode()).rightJustified(7),
                               VXSampleErrorJson::severityName(theError.severity()),
                               theError.errorMessage());
}

} // namespace

VXSampleExitCode VXSampleMessageCommand::run(const QCommandLineParser& theArguments,
                                             VXSampleContext& theContext)
{
    QList<int> codes;
    for (const QString& text : theArguments.positionalArguments()) {
        bool isNumber = false;
        codes << text.toInt(&isNumber);
        if (!isNumber)
            return refuse(theContext, u"message: \"%1\" is no code"_s.arg(text));
    }
    if (codes.isEmpty())
        codes = codesOfTable();

    QJsonArray messages;
    for (const int code : codes) {
        const VXNetworkingError error(static_cast<VXNetworkingErrorCode>(code));
        messages.append(VXSampleErrorJson::fromError(error));
        theContext.output.message(readableLine(error));
    }
    theContext.output.result({{u"messages"_s, messages}});
    return VXSampleExitCode::Success;
}
