#pragma once

#include <QtCore/QString>
#include <QtCore/QStringList>

/// The benchmarks that need a web engine. Each runs in a process of its own, so that the engine's
/// threads and memory are in no other figure, and a hang of it ends after a while.
class VXWebRun
{
public:
    /// From here to the end of the first load, in a fresh process: "ours" with the library's
    /// start-up and view, "bare" with Qt's view alone. Prints the nanoseconds of wall and processor
    /// time. Returns the status of the process.
    [[nodiscard]] static int startToFirstLoad(int& theArgumentCount, char** theArguments,
                                              const QString& theSide, const QString& thePage);

    /// The words are "web ID ROUNDS (full|short)". Measures in this process and prints the report's
    /// JSON.
    [[nodiscard]] static int measure(const QStringList& theWords);
};
