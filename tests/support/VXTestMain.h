#pragma once

#include "VXTestEnvironment.h"

#include <QtTest/QTest>

// Qt gives up after five seconds. Beside other tests on two processors a page or a process may take
// longer to come; who waits for an event loses nothing by more patience.
namespace VXTestMain {
inline constexpr int patience = 20'000; // milliseconds
}
#undef QTRY_VERIFY
#define QTRY_VERIFY(theCondition) QTRY_VERIFY_WITH_TIMEOUT((theCondition), VXTestMain::patience)
#undef QTRY_COMPARE
#define QTRY_COMPARE(theActual, theExpected)                                                       \
    QTRY_COMPARE_WITH_TIMEOUT((theActual), theExpected, VXTestMain::patience)

/// The main function of a test program, with an application object of the named class
/// (QCoreApplication or QApplication; the test includes its header) in a private home.
#define VX_TEST_MAIN(ApplicationClass, TestClass)                                                  \
    int main(int theArgumentCount, char* theArguments[])                                           \
    {                                                                                              \
        const VXTestEnvironment environment;                                                       \
        ApplicationClass application(theArgumentCount, theArguments);                              \
        application.setApplicationName(QStringLiteral(#TestClass));                                \
        TestClass test;                                                                            \
        return QTest::qExec(&test, theArgumentCount, theArguments);                                \
    }
