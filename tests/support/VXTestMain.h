#pragma once

#include "VXTestEnvironment.h"

#include <QtTest/QTest>

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
