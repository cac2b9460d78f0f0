#include "VXSampleProblemCommand.h"

#include "VXSampleContext.h"
#include "VXSampleMediatorEvents.h"
#include "VXSampleOutput.h"
#include "VXSampleProblems.h"

#include <QtCore/QCommandLineParser>
#include <QtCore/QStringList>

using namespace Qt::StringLiterals;

namespace {

QString knownNames()
{
    QStringList names;
    for (const VXSampleProblem& problem : VXSampleProblems::all())
        names << problem.name;
    return names.join(u", "_s);
}

} // namespace

VXSampleExitCode VXSampleProblemCommand::run(const QCommandLineParser& theArguments,
                                             VXSampleContext& theContext)
{
    const QStringList names = theArguments.positionalArguments();
    for (const QString& name : names) {
        if (VXSampleProblems::find(name) == nullptr)
            return refuse(theContext, u"problem: \"%1\" is none of %2"_s.arg(name, knownNames()));
    }
    const VXSampleMediatorEvents events(theContext);
    VXSampleProblemScene scene{theContext, nullptr};
    for (const QString& name : names) {
        if (!VXSampleProblems::run(*VXSampleProblems::find(name), scene))
            return VXSampleExitCode::EnvironmentError;
    }
    theContext.output.result({{u"problems"_s, static_cast<int>(names.size())}});
    return VXSampleExitCode::Success;
}
