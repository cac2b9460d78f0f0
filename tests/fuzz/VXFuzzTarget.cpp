#include "VXFuzzTarget.h"

#include "VXTestEnvironment.h"

#include <QtCore/QFileInfo>
#include <QtCore/QTemporaryDir>
#include <QtGui/QGuiApplication>

#include <array>
#include <bit>
#include <cstdio>
#include <cstdlib>
#include <memory>

namespace {

constexpr size_t kindCount = 64;
constexpr size_t slotsPerKind = 128;

using Outcomes = std::array<uint8_t, kindCount * slotsPerKind>;

/// libFuzzer finds it by its section, clears it before each case and takes each byte for a branch.
[[gnu::section("__libfuzzer_extra_counters"), gnu::used]] Outcomes outcomes{};

void discard(QtMsgType, const QMessageLogContext&, const QString&) {}

/// Lives until the process ends.
class Surroundings
{
    Q_DISABLE_COPY_MOVE(Surroundings)

public:
    Surroundings()
    {
        // In memory: some targets write a file for each case.
        const bool hasMemory = QFileInfo(QStringLiteral("/dev/shm")).isWritable();
        folder = std::make_unique<QTemporaryDir>(
            hasMemory ? QStringLiteral("/dev/shm/vx-fuzz-XXXXXX") : QString());
        qInstallMessageHandler(discard);
    }
    ~Surroundings() = default;

    const VXTestEnvironment environment;
    std::unique_ptr<QTemporaryDir> folder;
    int argumentCount = 1;
    char name[8] = "vx-fuzz";
    char* arguments[2] = {name, nullptr};
    const QGuiApplication application{argumentCount, arguments};
};

Surroundings& surroundings()
{
    static Surroundings ourSurroundings;
    return ourSurroundings;
}

} // namespace

void VXFuzzTarget::prepare()
{
    surroundings();
}

QString VXFuzzTarget::folder()
{
    return surroundings().folder->path();
}

void VXFuzzTarget::check(bool theIsKept, const char* thePromise)
{
    if (theIsKept)
        return;
    std::fprintf(stderr, "broken promise: %s\n", thePromise);
    std::abort();
}

QByteArrayList VXFuzzTarget::lines(const QByteArray& theInput, qsizetype theCount)
{
    QByteArrayList result = theInput.split('\n');
    while (result.size() < theCount)
        result.append(QByteArray());
    return result;
}

void VXFuzzTarget::planted([[maybe_unused]] bool theIsReached)
{
#ifdef VX_PLANTED_FAULT
    if (!theIsReached)
        return;
    const auto buffer = std::make_unique<volatile char[]>(8);
    const volatile size_t behind = 8;
    buffer[behind] = 'x';
#endif
}

void VXFuzzTarget::saw(const char* theKind, qint64 theValue)
{
    static const bool ourIsIgnored = qEnvironmentVariableIsSet("VX_FUZZ_BRANCHES_ONLY");
    if (ourIsIgnored)
        return;
    constexpr quint64 single = 32;
    const auto value = static_cast<quint64>(theValue);
    const size_t slot = value < single ? value : single + std::bit_width(value);
    const size_t kind = qHash(QByteArrayView(theKind), 0) % kindCount;
    outcomes[kind * slotsPerKind + slot] = 1;
}

QByteArray VXFuzzTarget::input(const uint8_t* theData, size_t theSize)
{
    return {reinterpret_cast<const char*>(theData), static_cast<qsizetype>(theSize)};
}
