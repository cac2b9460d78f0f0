#pragma once

#include "VXBenchComparison.h"
#include "VXBenchNginx.h"
#include "VXBenchReport.h"
#include "VXTestCertificates.h"

#include <QtCore/QByteArray>
#include <QtCore/QStringList>
#include <QtCore/QTemporaryDir>

#include <memory>

/// What every benchmark works with: the number of rounds, the server, and the report.
///
/// This process stays on processor 0 and the server on 1, where the machine has two.
class VXBenchSession
{
    Q_DISABLE_COPY_MOVE(VXBenchSession)

public:
    VXBenchSession(int theRounds, bool theIsShort);
    ~VXBenchSession();

    [[nodiscard]] int rounds() const { return myRounds; }
    /// Small sizes, for machines that are not quiet anyway.
    [[nodiscard]] bool isShort() const { return myIsShort; }
    [[nodiscard]] VXBenchReport& report() { return myReport; }

    /// Started by the first call; its certificate is signed by authority().
    [[nodiscard]] VXBenchNginx& nginx();
    [[nodiscard]] const VXTestCertificates::Identity& authority() const;

    /// A file that lives as long as the session, in memory where the machine allows it.
    [[nodiscard]] QString filePath(const QString& theName) const;

    /// Warms up, then takes turns between the two sides, and reports wall time (or what the metric
    /// says), CPU time of this process and peak memory.
    VXBenchTimes compare(const VXBenchComparison& theComparison);

    /// Starts this or another program without the pinning and returns what it writes to standard
    /// output; nothing when it fails, with the reason in the report under theId.
    QByteArray run(const QString& theId, const QString& theProgram, const QStringList& theArguments,
                   bool theIsPinned = true);

    /// Lets the calling thread, and the threads that it makes, run on that processor only; -1 = on
    /// all. Does nothing where there is only one.
    static void pin(int theProcessor, qint64 theProcess = 0);

    /// Bytes that do not compress, the same in each run.
    [[nodiscard]] static QByteArray randomBytes(qsizetype theSize);

private:
    struct Sample;
    [[nodiscard]] Sample measure(const VXBenchComparison& theComparison,
                                 const VXBenchComparison::Task& theTask);
    void addRows(const VXBenchComparison& theComparison, const QList<Sample>& theOurs,
                 const QList<Sample>& theTheirs);

    const int myRounds;
    const bool myIsShort;
    QTemporaryDir myFolder;
    VXBenchReport myReport;
    VXTestCertificates myCertificates;
    std::unique_ptr<VXBenchNginx> myNginx;
};
