#include "VXDBusService.h"

#include <QtDBus/QDBusConnection>
#include <QtDBus/QDBusError>
#include <QtDBus/QDBusMessage>
#include <QtDBus/QDBusVariant>

using namespace Qt::StringLiterals;

namespace {

constexpr std::chrono::milliseconds allowance(300);

bool isTimeout(const QDBusMessage& theReply)
{
    const QDBusError::ErrorType error = QDBusError(theReply).type();
    return error == QDBusError::NoReply || error == QDBusError::Timeout ||
           error == QDBusError::TimedOut;
}

} // namespace

VXDBusService::VXDBusService(const QDBusConnection& theBus, const QString& theServiceName)
    : myBus(std::make_unique<QDBusConnection>(theBus))
    , myServiceName(theServiceName)
{
}

VXDBusService::~VXDBusService() = default;

bool VXDBusService::begin()
{
    if (!myPauseEnd.hasExpired() || !myBus->isConnected())
        return false;
    myDeadline = QDeadlineTimer(allowance);
    return true;
}

std::optional<QVariant> VXDBusService::call(const QString& thePath, const QString& theInterface,
                                            const QString& theMethod,
                                            const QVariantList& theArguments)
{
    const qint64 remaining = myDeadline.remainingTime(); // milliseconds
    if (remaining <= 0)
        return std::nullopt;

    QDBusMessage question =
        QDBusMessage::createMethodCall(myServiceName, thePath, theInterface, theMethod);
    question.setAutoStartService(false);
    question.setArguments(theArguments);
    const QDBusMessage reply = myBus->call(question, QDBus::Block, static_cast<int>(remaining));
    if (isTimeout(reply))
        myPauseEnd = QDeadlineTimer(myPause);
    if (reply.type() != QDBusMessage::ReplyMessage || reply.arguments().isEmpty())
        return std::nullopt;
    return reply.arguments().constFirst();
}

std::optional<QVariant> VXDBusService::property(const QString& thePath, const QString& theInterface,
                                                const QString& theName)
{
    const std::optional<QVariant> value =
        call(thePath, u"org.freedesktop.DBus.Properties"_s, u"Get"_s, {theInterface, theName});
    if (!value || !value->canConvert<QDBusVariant>())
        return std::nullopt;
    return value->value<QDBusVariant>().variant();
}
