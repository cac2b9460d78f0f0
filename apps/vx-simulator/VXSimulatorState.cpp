#include "VXSimulatorState.h"

#include "VXSimulatorJsonReader.h"

#include <QtCore/QRegularExpression>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

constexpr qsizetype maximumBehaviours = 1000;
constexpr qint64 longestClockOffsetMs = 100LL * 365 * 24 * 3600 * 1000;

QString readCredentials(const QString& theName, const QJsonObject& theObject,
                        std::optional<VXSimulatorState::Credentials>* theResult)
{
    if (theObject.isEmpty()) {
        theResult->reset();
        return {};
    }
    VXSimulatorJsonReader reader(theName, theObject);
    const VXSimulatorState::Credentials read{reader.text(u"user"_s), reader.text(u"password"_s)};
    if (read.user.isEmpty() || read.user.contains(u':'))
        reader.fail(u"user"_s, u"must be a name without colon"_s);
    if (reader.error().isEmpty())
        *theResult = read;
    return reader.error();
}

bool isHostName(const QString& theText)
{
    static const QRegularExpression admitted(u"\\A(\\*\\.)?[A-Za-z0-9_.-]{1,253}\\z"_s);
    return admitted.match(theText).hasMatch();
}

} // namespace

QString VXSimulatorState::applyScenario(const QJsonObject& theObject)
{
    VXSimulatorState next = *this;
    VXSimulatorJsonReader reader(u"scenario"_s, theObject);
    QStringList errors;
    if (reader.has(u"users"_s))
        next.myUsers.clear();
    for (const QJsonObject& object : reader.objects(u"users"_s)) {
        std::optional<Credentials> user;
        errors.append(readCredentials(u"users"_s, object, &user));
        if (user)
            next.myUsers.insert(user->user, user->password);
    }
    next.myHosts = reader.texts(u"hosts"_s, myHosts);
    if (!std::ranges::all_of(next.myHosts, isHostName)) // they are written into certificates
        reader.fail(u"hosts"_s, u"must be host names, with \"*.\" at the front or without"_s);
    errors.append(next.applyProxy(reader.object(u"proxy"_s)));
    errors.append(next.applySocks(reader.object(u"socks"_s)));
    errors.append(next.applyOAuth(reader.object(u"oauth"_s)));
    if (reader.has(u"clock"_s))
        errors.append(next.applyClock(reader.object(u"clock"_s)));
    for (const QJsonObject& object : reader.objects(u"behaviours"_s))
        errors.append(next.addBehaviour(object));
    errors.prepend(reader.error());
    errors.removeAll(QString());
    if (!errors.isEmpty())
        return errors.first();
    *this = next;
    return {};
}

QString VXSimulatorState::addBehaviour(const QJsonObject& theObject)
{
    QString error;
    const auto behaviour = VXSimulatorBehaviour::fromJson(theObject, &error);
    if (!behaviour)
        return error;
    if (myBehaviours.size() >= maximumBehaviours)
        return u"behaviour: there are too many already"_s;
    myBehaviours.append(*behaviour);
    return {};
}

QString VXSimulatorState::applyOAuth(const QJsonObject& theObject)
{
    VXSimulatorJsonReader reader(u"oauth"_s, theObject);
    OAuth next;
    next.expiresIn =
        static_cast<int>(reader.number(u"expiresIn"_s, myOAuth.expiresIn, 0, 1'000'000'000));
    next.rotateRefresh = reader.flag(u"rotateRefresh"_s, myOAuth.rotateRefresh);
    next.sendRefreshToken = reader.flag(u"sendRefreshToken"_s, myOAuth.sendRefreshToken);
    if (reader.error().isEmpty())
        myOAuth = next;
    return reader.error();
}

QString VXSimulatorState::applyClock(const QJsonObject& theObject)
{
    if (theObject.isEmpty()) {
        myClockOffsetMs.reset();
        return {};
    }
    VXSimulatorJsonReader reader(u"clock"_s, theObject);
    const qint64 offset =
        reader.number(u"offsetMs"_s, 0, -longestClockOffsetMs, longestClockOffsetMs);
    if (reader.error().isEmpty())
        myClockOffsetMs = offset;
    return reader.error();
}

QString VXSimulatorState::applyProxy(const QJsonObject& theObject)
{
    return readCredentials(u"proxy"_s, theObject, &myProxy);
}

QString VXSimulatorState::applySocks(const QJsonObject& theObject)
{
    return readCredentials(u"socks"_s, theObject, &mySocks);
}

std::optional<VXSimulatorBehaviour>
VXSimulatorState::takeBehaviour(const VXSimulatorRequest& theRequest)
{
    for (qsizetype index = 0; index < myBehaviours.size(); ++index) {
        VXSimulatorBehaviour& behaviour = myBehaviours[index];
        if (!behaviour.matches(theRequest))
            continue;
        const VXSimulatorBehaviour taken = behaviour;
        if (behaviour.times > 0 && --behaviour.times == 0)
            myBehaviours.removeAt(index);
        return taken;
    }
    return std::nullopt;
}

bool VXSimulatorState::isUser(const QString& theName, const QString& thePassword) const
{
    const auto user = myUsers.find(theName);
    return user != myUsers.end() && *user == thePassword;
}

bool VXSimulatorState::isKnownHost(const QString& theHost) const
{
    if (!isHostName(theHost)) // a proxy's client may name anything
        return false;
    for (const QString& known : myHosts) {
        if (theHost.compare(known, Qt::CaseInsensitive) == 0)
            return true;
        if (known.startsWith(u"*."_s) &&
            theHost.endsWith(QStringView(known).sliced(1), Qt::CaseInsensitive) &&
            theHost.size() >= known.size())
            return true;
    }
    return false;
}

QDateTime VXSimulatorState::now() const
{
    return QDateTime::currentDateTimeUtc().addMSecs(myClockOffsetMs.value_or(0));
}
