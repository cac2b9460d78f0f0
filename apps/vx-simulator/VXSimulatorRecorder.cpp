#include "VXSimulatorRecorder.h"

#include <QtCore/QCryptographicHash>
#include <QtCore/QDateTime>
#include <QtCore/QStringDecoder>

#include <algorithm>

using namespace Qt::StringLiterals;

int VXSimulatorRecorder::add(const VXSimulatorRequest& theRequest)
{
    Entry entry;
    entry.number = ++myLastNumber;
    entry.record = {
        {u"number"_s, entry.number},
        {u"time"_s, QDateTime::currentDateTimeUtc().toString(Qt::ISODateWithMs)},
        {u"listener"_s, theRequest.listener},
        {u"peer"_s, theRequest.peer},
        {u"method"_s, QString::fromLatin1(theRequest.method)},
        {u"target"_s, QString::fromLatin1(theRequest.target)},
        {u"version"_s, QString::fromLatin1(theRequest.version)},
        {u"headers"_s, theRequest.headersToJson()},
        {u"bodySize"_s, theRequest.body.size()},
        {u"bodySha256"_s,
         QString::fromLatin1(
             QCryptographicHash::hash(theRequest.body, QCryptographicHash::Sha256).toHex())},
    };
    entry.hasBody = theRequest.body.size() <= maximumBodyBytes;
    if (entry.hasBody)
        entry.body = theRequest.body;
    myBodyBytes += entry.body.size();
    myEntries.push_back(std::move(entry));
    forgetOldest();
    return myLastNumber;
}

void VXSimulatorRecorder::forgetOldest()
{
    while (myEntries.size() > maximumRequests) {
        myBodyBytes -= myEntries.front().body.size();
        myEntries.pop_front();
    }
    for (auto entry = myEntries.begin(); myBodyBytes > maximumAllBodyBytes; ++entry) {
        if (entry->body.isEmpty())
            continue;
        myBodyBytes -= entry->body.size();
        entry->body.clear();
        entry->hasBody = false;
    }
}

void VXSimulatorRecorder::setStatus(int theNumber, int theStatus)
{
    const auto entry = std::ranges::lower_bound(myEntries, theNumber, {}, &Entry::number);
    if (entry != myEntries.end() && entry->number == theNumber)
        entry->record.insert(u"status"_s, theStatus);
}

QJsonArray VXSimulatorRecorder::since(int theNumber) const
{
    QJsonArray list;
    for (const Entry& entry : myEntries)
        if (entry.number > theNumber)
            list.append(withBody(entry));
    return list;
}

QJsonObject VXSimulatorRecorder::withBody(const Entry& theEntry)
{
    QJsonObject record = theEntry.record;
    if (!theEntry.hasBody)
        return record;
    record.insert(u"body"_s, QString::fromLatin1(theEntry.body.toBase64()));
    QStringDecoder decoder(QStringDecoder::Utf8);
    const QString text = decoder(theEntry.body);
    if (!decoder.hasError())
        record.insert(u"text"_s, text);
    return record;
}

void VXSimulatorRecorder::clear()
{
    myEntries.clear();
    myBodyBytes = 0;
}
