#pragma once

#include "VXScriptedUser.h"
#include "VXWorker.h"

#include <QtTest/QTest>

#include <functional>

class VXHttpOperation;

Q_DECLARE_METATYPE(VXWhere)

/// Every exchange is tested four times: in the GUI thread and in a worker, with and without a
/// question to the user in its middle.
///
/// The data function calls addColumns() and addRows() beside its own columns, the test function
/// makes one matrix, which is the user as well, and calls run() or inThread() once.
class VXExchangeMatrix : public VXScriptedUser
{
    Q_OBJECT

public:
    /// What stays of an exchange; a plain value that may change threads.
    struct Outcome
    {
        int code = -1;
        int status = -1;
        QByteArray body;
        QString details; // for the message of a failing test
    };

    /// The columns "where" and "asks"; before the test's own ones.
    static void addColumns();
    /// Four rows of one name.
    template <typename... Values>
    static void addRows(const char* theName, const Values&... theValues);
    /// Two rows, one for each thread, for tests that are about a certain question.
    template <typename... Values>
    static void addThreadRows(const char* theName, bool theAsks, const Values&... theValues);
    /// Three rows: a QThread besides.
    template <typename... Values>
    static void addRowsForAllThreads(const char* theName, bool theAsks, const Values&... theValues);

    /// Reads the current row. The user knows the password of VXNginxServer.
    VXExchangeMatrix();

    [[nodiscard]] bool asks() const { return myAsks; }
    [[nodiscard]] bool isWorker() const { return myWhere != VXWhere::ApplicationThread; }

    /// Calls the function in the thread of the row, where a manager without history serves it, and
    /// runs the event loop of the GUI thread meanwhile. Returns when the function has.
    void inThread(const std::function<void()>& theFunction) const;
    /// The same without a row.
    static void inThread(VXWhere theWhere, const std::function<void()>& theFunction);
    /// inThread() with an exchange.
    [[nodiscard]] Outcome run(const std::function<Outcome()>& theExchange) const;

    /// Executes the operation.
    [[nodiscard]] static Outcome exec(VXHttpOperation& theOperation);

    /// True when the questions were as the row wants: one of that kind in the GUI thread, or none.
    [[nodiscard]] bool wasAskedAsExpected(Kind theKind = Kind::ServerPassword) const;

private:
    template <typename... Values>
    static void addRow(VXWhere theWhere, const char* theName, bool theAsks,
                       const Values&... theValues);

    VXWhere myWhere = VXWhere::ApplicationThread;
    bool myAsks = false;
};

template <typename... Values>
void VXExchangeMatrix::addRows(const char* theName, const Values&... theValues)
{
    addThreadRows(theName, false, theValues...);
    addThreadRows(theName, true, theValues...);
}

template <typename... Values>
void VXExchangeMatrix::addThreadRows(const char* theName, bool theAsks, const Values&... theValues)
{
    for (const VXWhere where : {VXWhere::ApplicationThread, VXWhere::Worker})
        addRow(where, theName, theAsks, theValues...);
}

template <typename... Values>
void VXExchangeMatrix::addRowsForAllThreads(const char* theName, bool theAsks,
                                            const Values&... theValues)
{
    addThreadRows(theName, theAsks, theValues...);
    addRow(VXWhere::QtThread, theName, theAsks, theValues...);
}

template <typename... Values>
void VXExchangeMatrix::addRow(VXWhere theWhere, const char* theName, bool theAsks,
                              const Values&... theValues)
{
    const char* const thread = theWhere == VXWhere::ApplicationThread ? "GUI thread"
                               : theWhere == VXWhere::Worker          ? "worker"
                                                                      : "QThread";
    QTestData& row = QTest::addRow("%s, %s%s", theName, thread, theAsks ? ", asked" : "");
    row << theWhere << theAsks;
    static_cast<void>((row << ... << theValues));
}
