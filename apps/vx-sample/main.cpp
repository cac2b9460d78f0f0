// How a host of the library begins and ends, to be copied. Each step needs the ones before it;
// docs/start-up.md says why. What is this program's own, its options and commands, is in
// VXSampleProgram.

#include "VXSampleMessages.h"
#include "VXSampleProgram.h"
#include "VXSampleQuestions.h"

#include <VXCore/VXInitializer.h>
#include <VXCore/VXLocaleAndTranslationManager.h>
#include <VXCore/VXLogger.h>

#include <QtCore/QCoreApplication>
#include <QtCore/QLocale>

using namespace Qt::StringLiterals;

int main(int theCount, char* theArguments[])
{
    // Names first: they decide where settings, logs and temporary files lie.
    QCoreApplication::setOrganizationName(u"VX"_s);
    QCoreApplication::setApplicationName(u"vx-sample"_s);
    QCoreApplication::setApplicationVersion(QStringLiteral(VX_PROJECT_VERSION));
    VXSampleMessages::install(); // what people see on standard error

    // A look at the command line without an application object, so that help needs no display;
    // then the deployment, which all that follows reads.
    VXSampleProgram program(theCount, theArguments);
    if (!program.readCommandLine() || !program.readDeployment())
        return program.exitStatus();

    // The application object. From here on singletons may be used, but no web content yet.
    if (!program.makeApplication())
        return program.exitStatus();

    // The log, then the language: error texts keep the language of their first use. Numbers, dates
    // and the web engine's own menus follow the same choice.
    VXLogger::installMessageHandler();
    VXLocaleAndTranslationManager* const language = VXLocaleAndTranslationManager::instance();
    language->installTranslators();
    QLocale::setDefault(QLocale(language->bcp47Name()));

    // The strict look at the command line. Options of the library act before the first request.
    if (!program.processCommandLine())
        return program.exitStatus();

    // The library itself, before the first object of the web engine; a program that shows no web
    // content leaves this and the end of it out.
    const bool showsWebContent = program.showsWebContent();
    if (showsWebContent)
        VXInitializer::instance()->runSetup(program.initializerOption());

    // What the library asks becomes dialogs, from whatever thread it asks. Then windows and events.
    const VXSampleQuestions questions;
    program.exec();

    // The web views are gone by now; the application object goes last, with the program.
    if (showsWebContent)
        VXInitializer::instance()->runTeardown();
    return program.exitStatus();
}
