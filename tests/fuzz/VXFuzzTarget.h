#pragma once

#include <QtCore/QByteArray>
#include <QtCore/QByteArrayList>
#include <QtCore/QString>

#include <cstddef>
#include <cstdint>

/// What the fuzz targets share. A target is a program of one function,
/// LLVMFuzzerTestOneInput(). With libFuzzer it searches, with VXReplayMain.cpp it goes through the
/// cases that are kept.
class VXFuzzTarget
{
public:
    VXFuzzTarget() = delete;

    /// An application object, a graphical one as a host has it, in a private home, and no log. The
    /// first call does it.
    static void prepare();

    /// A folder of this process that vanishes with it.
    static QString folder();

    /// Ends the process when a promise of the library is broken.
    static void check(bool theIsKept, const char* thePromise);

    /// The input's lines, at least theCount, in the order in which a target takes them.
    static QByteArrayList lines(const QByteArray& theInput, qsizetype theCount);

    /// In the programs "..._planted" a write behind the end of a buffer when theIsReached; nothing
    /// in all others. The search must find it: this proves that it gets that far and that the
    /// sanitizer watches.
    static void planted(bool theIsReached);

    /// Tells the search what came back from Qt, which is not instrumented: a case whose outcome no
    /// earlier one had is kept. theKind is a word of the target's; each value up to 31 counts by
    /// itself, larger ones by their number of bits. Nothing counts when VX_FUZZ_BRANCHES_ONLY is
    /// set.
    static void saw(const char* theKind, qint64 theValue);

    static QByteArray input(const uint8_t* theData, size_t theSize);
};

/// Entry point of libFuzzer.
extern "C" int LLVMFuzzerTestOneInput(const uint8_t* theData, size_t theSize);
