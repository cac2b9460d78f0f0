#include "VXTourRun.h"

#include "VXRecordedRequest.h"
#include "VXSampleAnswers.h"
#include "VXSampleErrorJson.h"
#include "VXSimulatorControl.h"
#include "VXTourLog.h"
#include "VXTourRow.h"
#include "VXTourVisitor.h"

#include <VXNetworking/VXHttpOperation.h>

#include <QtCore/QJsonArray>
#include <QtCore/QJsonDocument>

#include <algorithm>

using namespace Qt::StringLiterals;

VXTourRun::VXTourRun(VXTourWorld& theWorld, VXTourRow& theRow)
    : world(theWorld)
    , myRow(theRow)
    , myFirstRequest(theWorld.control.lastNumber())
    , myFirstQuestion(theWorld.answers.questions())
    , myFirstLine(theWorld.log.size())
{
}

void VXTourRun::came(const QString& theText)
{
    if (!myRow.answer.isEmpty())
        myRow.answer += myRow.answer.endsWith(u'.') ? u" "_s : u"; "_s;
    myRow.answer += theText;
}

void VXTourRun::came(const VXHttpOperation& theOperation, qsizetype theBytes)
{
    const VXNetworkingError error = theOperation.errorStatus();
    if (error.errorOccurred())
        came(u"error %1 (%2): %3"_s.arg(QString::number(error.errorCode()),
                                        VXSampleErrorJson::severityName(error.severity()),
                                        error.errorMessage().remove(u"<br>"_s)));
    else
        came(u"status %1, %2 bytes"_s.arg(QString::number(theOperation.httpResponseCode()),
                                          QString::number(theBytes)));
}

void VXTourRun::expect(bool theIsSo, const QString& theComplaint)
{
    if (!theIsSo)
        myRow.complaints << theComplaint.simplified();
}

void VXTourRun::expectSuccess(const VXHttpOperation& theOperation)
{
    expectEqual<qint64>(u"error code"_s, theOperation.errorStatus().errorCode(), NoError);
    expectEqual<qint64>(u"status"_s, theOperation.httpResponseCode(), 200);
}

QList<VXRecordedRequest> VXTourRun::expectReceived(const QList<VXTourExpectation>& theWanted)
{
    return match(world.control.requestsSince(myFirstRequest), theWanted);
}

QList<VXRecordedRequest> VXTourRun::match(const QList<VXRecordedRequest>& theReceived,
                                          const QList<VXTourExpectation>& theWanted)
{
    QList<VXRecordedRequest> open = theReceived;
    expectEqual<qint64>(u"number of recorded requests"_s, open.size(), theWanted.size());

    QList<VXRecordedRequest> found;
    for (const VXTourExpectation& wanted : theWanted) {
        const auto request =
            std::ranges::find_if(open, [&wanted](const VXRecordedRequest& theRequest) {
                return wanted.isSameRequest(theRequest);
            });
        if (request == open.end()) {
            expect(false, u"the simulator recorded no %1 %2 with this body"_s.arg(wanted.method,
                                                                                  wanted.target));
            continue;
        }
        myRow.complaints << wanted.headerComplaints(*request);
        myRow.recorded << request->toJson();
        found << *request;
        open.erase(request);
    }
    for (const VXRecordedRequest& request : open)
        myRow.recorded << request.toJson();
    return found;
}

void VXTourRun::expectReceivedAtLeastOnce(const VXTourExpectation& theWanted)
{
    const QList<VXRecordedRequest> requests = world.control.requestsSince(myFirstRequest);
    // Asked once: Qt may be repeating it right now.
    match(requests, QList<VXTourExpectation>(std::max<qsizetype>(1, requests.size()), theWanted));
}

void VXTourRun::expectEcho(const QByteArray& theAnswer, const VXRecordedRequest& theRequest)
{
    const QJsonObject answer = QJsonDocument::fromJson(theAnswer).object();
    const QJsonObject record = theRequest.toJson();
    for (const QString& key : {u"method"_s, u"target"_s, u"bodySha256"_s})
        expectEqual<QString>(u"the answer's "_s + key, answer.value(key).toString(),
                             record.value(key).toString());
}

void VXTourRun::photograph(QWidget* theWidget, const QString& theFileName)
{
    VXTourVisitor::photograph(theWidget, world.folder.filePath(theFileName));
    addPicture(theFileName);
}

void VXTourRun::addPicture(const QString& theFileName)
{
    expect(world.folder.exists(theFileName), u"the picture %1 is missing"_s.arg(theFileName));
    myRow.pictures << theFileName;
}

void VXTourRun::expectQuestions(int theWanted)
{
    expectEqual<qint64>(u"number of questions"_s, world.answers.questions() - myFirstQuestion,
                        theWanted);
}

QStringList VXTourRun::logLines(const QString& theText) const
{
    return world.log.linesFrom(myFirstLine).filter(theText);
}
