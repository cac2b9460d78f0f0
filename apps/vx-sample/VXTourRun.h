#pragma once

#include "VXRecordedRequest.h"
#include "VXTourExpectation.h"

#include <QtCore/QDir>
#include <QtCore/QJsonObject>
#include <QtCore/QList>

class QWidget;
class VXHttpOperation;
class VXSampleAnswers;
class VXSampleSimulator;
class VXSimulatorControl;
class VXTourLog;
struct VXSampleContext;
struct VXTourRow;

/// What the tour works with. Main thread.
struct VXTourWorld
{
    VXSampleContext& context;
    const VXSampleSimulator& simulator;
    VXSimulatorControl& control;
    VXSampleAnswers& answers;
    VXTourLog& log;
    QDir folder; ///< where files of the tour go
    bool isSlow; ///< whether to wait a minute, too
};

/// One row of the tour while it runs: the step does something with the library, says what came
/// back and what it expects; what is not so becomes a complaint. Main thread.
class VXTourRun
{
    Q_DISABLE_COPY_MOVE(VXTourRun)

public:
    /// `theRow` gets answer, complaints and requests.
    VXTourRun(VXTourWorld& theWorld, VXTourRow& theRow);

    VXTourWorld& world;

    /// Says what came back. Several texts are joined.
    void came(const QString& theText);

    /// Says how an exchange ended: status or error code.
    void came(const VXHttpOperation& theOperation, qsizetype theBytes);

    void expect(bool theIsSo, const QString& theComplaint);

    template <typename T>
    void expectEqual(const QString& theName, const T& theActual, const T& theWanted)
    {
        expect(theActual == theWanted, QStringLiteral("%1 is \"%2\" and not \"%3\"")
                                           .arg(theName, toText(theActual), toText(theWanted)));
    }

    /// Expects a success with status 200.
    void expectSuccess(const VXHttpOperation& theOperation);

    /// Expects exactly these requests since the row began, in any order. Returns them.
    QList<VXRecordedRequest> expectReceived(const QList<VXTourExpectation>& theWanted);

    /// As expectReceived() for requests that Qt may repeat: after a connection that ended early.
    void expectReceivedAtLeastOnce(const VXTourExpectation& theWanted);

    /// Expects that an answer of the simulator's "/echo" says what the simulator recorded.
    void expectEcho(const QByteArray& theAnswer, const VXRecordedRequest& theRequest);

    /// Takes a picture of the widget into the tour's folder.
    void photograph(QWidget* theWidget, const QString& theFileName);

    /// Shows a picture that is in the tour's folder already; a missing one is a complaint.
    void addPicture(const QString& theFileName);

    /// Expects so many questions since the row began.
    void expectQuestions(int theWanted);

    /// The log lines since the row began that contain `theText`.
    [[nodiscard]] QStringList logLines(const QString& theText) const;

private:
    QList<VXRecordedRequest> match(const QList<VXRecordedRequest>& theReceived,
                                   const QList<VXTourExpectation>& theWanted);

    static QString toText(const QString& theText) { return theText; }
    static QString toText(qint64 theNumber) { return QString::number(theNumber); }
    static QString toText(bool theFlag)
    {
        return theFlag ? QStringLiteral("true") : QStringLiteral("false");
    }

    VXTourRow& myRow;
    int myFirstRequest;
    int myFirstQuestion;
    qsizetype myFirstLine;
};
