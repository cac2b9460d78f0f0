#pragma once

#include "VXTestMain.h"

#include <QtCore/QHash>
#include <QtCore/QStringList>

#include <chrono>

/// What must happen in a process of its own, for instance because the library does it once: the
/// test program starts itself again with the name of a probe and reads what that prints.
class VXProbe
{
public:
    using Function = int (*)();

    VXProbe() = delete;

    /// Prints one line for run(). Line feeds within it are escaped.
    static void print(const QString& theLine);

    /// Starts this program with the probe's name, in the private home of this process. Returns the
    /// printed lines; one line that begins with "PROBE FAILED" when it did not end with status 0
    /// in time.
    static QStringList run(const QString& theName,
                           std::chrono::milliseconds theTime = std::chrono::seconds(60));

    /// The probe that the command line names; null when this is the test run itself.
    static Function wanted(int theArgumentCount, char* theArguments[],
                           const QHash<QString, Function>& theProbes);
};

/// Like VX_TEST_MAIN, with probes: pairs of a name and a function without parameters that returns
/// the exit status. A probe has an application object as well and shares the home of its caller.
#define VX_PROBE_TEST_MAIN(ApplicationClass, TestClass, ...)                                       \
    int main(int theArgumentCount, char* theArguments[])                                           \
    {                                                                                              \
        if (const auto probe = VXProbe::wanted(theArgumentCount, theArguments, {__VA_ARGS__})) {   \
            ApplicationClass application(theArgumentCount, theArguments);                          \
            application.setApplicationName(QStringLiteral(#TestClass));                            \
            return probe();                                                                        \
        }                                                                                          \
        const VXTestEnvironment environment;                                                       \
        ApplicationClass application(theArgumentCount, theArguments);                              \
        application.setApplicationName(QStringLiteral(#TestClass));                                \
        TestClass test;                                                                            \
        return QTest::qExec(&test, theArgumentCount, theArguments);                                \
    }
