#include "VXSampleAnswers.h"

#include "VXSampleOutput.h"

#include <VXNetworking/VXNetworkAccessManagerSignalDispatcher.h>

#include <QtCore/QFile>
#include <QtCore/QJsonDocument>
#include <QtCore/QUrl>
#include <QtNetwork/QAuthenticator>

using namespace Qt::StringLiterals;

namespace {

const QStringList& kinds()
{
    static const QStringList names{u"serverLogin"_s, u"proxyLogin"_s, u"sslErrors"_s};
    return names;
}

} // namespace

VXSampleAnswers::VXSampleAnswers(VXSampleOutput& theOutput)
    : myOutput(theOutput)
{
    using Dispatcher = VXNetworkAccessManagerSignalDispatcher;
    const Dispatcher* dispatcher = Dispatcher::instance();
    connect(dispatcher, &Dispatcher::authenticationRequired, this,
            &VXSampleAnswers::answerServerLogin);
    connect(dispatcher, &Dispatcher::proxyAuthenticationRequired, this,
            &VXSampleAnswers::answerProxyLogin);
    connect(dispatcher, &Dispatcher::askIgnoreSSLErrors, this, &VXSampleAnswers::answerSslErrors);
}

VXSampleAnswers::~VXSampleAnswers() = default;

QString VXSampleAnswers::readFile(const QString& theFile)
{
    QFile file(theFile);
    if (!file.open(QIODevice::ReadOnly))
        return u"%1: %2"_s.arg(theFile, file.errorString());

    QJsonParseError error;
    const QJsonDocument document = QJsonDocument::fromJson(file.readAll(), &error);
    if (error.error != QJsonParseError::NoError)
        return u"%1: %2 at offset %3"_s.arg(theFile, error.errorString(),
                                            QString::number(error.offset));
    if (!document.isArray())
        return u"%1: must be a list"_s.arg(theFile);
    const QString complaint = add(document.array());
    return complaint.isEmpty() ? QString() : u"%1: %2"_s.arg(theFile, complaint);
}

QString VXSampleAnswers::add(const QJsonArray& theEntries)
{
    QList<Entry> entries;
    for (const QJsonValue& value : theEntries) {
        Entry entry;
        const QString complaint = read(value, &entry);
        if (!complaint.isEmpty())
            return u"entry %1: %2"_s.arg(QString::number(entries.size() + 1), complaint);
        entries << entry;
    }
    myEntries = entries + myEntries;
    return {};
}

void VXSampleAnswers::clear()
{
    myEntries.clear();
}

QString VXSampleAnswers::read(const QJsonValue& theValue, Entry* theEntry)
{
    const QJsonObject object = theValue.toObject();
    static const QStringList known{u"kind"_s, u"host"_s, u"user"_s, u"password"_s, u"answer"_s};
    for (const QString& key : object.keys()) {
        if (!known.contains(key))
            return u"unknown key \"%1\""_s.arg(key);
        if (key == u"answer"_s ? !object.value(key).isBool() : !object.value(key).isString())
            return u"\"%1\" must be %2"_s.arg(key, key == u"answer"_s ? u"true or false"_s
                                                                      : u"a text"_s);
    }
    theEntry->kind = object.value(u"kind"_s).toString();
    if (!kinds().contains(theEntry->kind))
        return u"\"kind\" must be one of %1"_s.arg(kinds().join(u", "_s));

    theEntry->host = QRegularExpression::fromWildcard(object.value(u"host"_s).toString(u"*"_s),
                                                      Qt::CaseInsensitive);
    theEntry->user = object.value(u"user"_s).toString();
    theEntry->password = object.value(u"password"_s).toString();
    theEntry->answer = object.value(u"answer"_s).toBool(!theEntry->user.isEmpty());
    return {};
}

std::optional<VXSampleAnswers::Entry> VXSampleAnswers::find(const QString& theKind,
                                                            const QString& theHost) const
{
    for (const Entry& entry : myEntries)
        if (entry.kind == theKind && entry.host.match(theHost).hasMatch())
            return entry;
    return std::nullopt;
}

void VXSampleAnswers::answerServerLogin(const QUrl& theUrl, QAuthenticator* theAuthenticator)
{
    answer(u"serverLogin"_s, theUrl.host(), theAuthenticator);
}

void VXSampleAnswers::answerProxyLogin(const QUrl& /*theUrl*/, QAuthenticator* theAuthenticator,
                                       const QString& theProxyHost)
{
    answer(u"proxyLogin"_s, theProxyHost, theAuthenticator);
}

void VXSampleAnswers::answer(const QString& theKind, const QString& theHost,
                             QAuthenticator* theAuthenticator)
{
    const std::optional<Entry> entry = find(theKind, theHost);
    announce(theKind, theHost, entry);
    if (!entry || !entry->answer)
        return;
    theAuthenticator->setUser(entry->user);
    theAuthenticator->setPassword(entry->password);
}

void VXSampleAnswers::answerSslErrors(const QString& theHost, const QList<QString>& theErrorList,
                                      bool* theResult)
{
    const std::optional<Entry> entry = find(u"sslErrors"_s, theHost);
    announce(u"sslErrors"_s, theHost, entry, theErrorList);
    *theResult = entry && entry->answer;
}

void VXSampleAnswers::announce(const QString& theKind, const QString& theHost,
                               const std::optional<Entry>& theEntry, const QStringList& theErrors)
{
    ++myQuestions;
    QJsonObject question{{u"kind"_s, theKind},
                         {u"host"_s, theHost},
                         {u"answer"_s, theEntry && theEntry->answer ? u"given"_s : u"refused"_s},
                         {u"matched"_s, theEntry.has_value()}};
    if (theEntry && !theEntry->user.isEmpty())
        question.insert(u"user"_s, theEntry->user);
    if (!theErrors.isEmpty())
        question.insert(u"errors"_s, QJsonArray::fromStringList(theErrors));
    myOutput.event(u"question"_s, question);
    if (!theEntry)
        myOutput.message(
            u"vx-sample: no answer for the question %1 of %2: refused"_s.arg(theKind, theHost));
}
