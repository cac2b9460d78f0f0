#pragma once

#include "VXSimulatorRequest.h"

#include <QtCore/QJsonArray>
#include <QtCore/QJsonObject>

#include <deque>

/// Remembers the requests that came in. Its memory is bounded: the oldest requests go first, and
/// of a large body only size and SHA-256 are kept.
class VXSimulatorRecorder
{
public:
    /// Most requests remembered.
    static constexpr std::size_t maximumRequests = 2000;
    /// Largest body kept whole, in bytes.
    static constexpr qint64 maximumBodyBytes = 1024 * 1024;
    /// Most bytes of bodies kept altogether.
    static constexpr qint64 maximumAllBodyBytes = 64 * 1024 * 1024;

    /// Adds a request and gives its number, which counts from 1 and is never used twice.
    int add(const VXSimulatorRequest& theRequest);
    /// Notes the status of the answer; 0 when there is none. Unknown numbers are ignored.
    void setStatus(int theNumber, int theStatus);
    /// Requests with a greater number, oldest first.
    [[nodiscard]] QJsonArray since(int theNumber) const;
    /// Number of the last request, 0 before the first.
    [[nodiscard]] int lastNumber() const noexcept { return myLastNumber; }
    /// Forgets the requests; the numbers go on.
    void clear();

private:
    struct Entry
    {
        int number = 0;
        QJsonObject record;
        QByteArray body;
        bool hasBody = true;
    };
    static QJsonObject withBody(const Entry& theEntry);
    void forgetOldest();

    std::deque<Entry> myEntries;
    qint64 myBodyBytes = 0;
    int myLastNumber = 0;
};
