#include "VXSampleProxyCommand.h"

#include "VXSampleArguments.h"
#include "VXSampleContext.h"
#include "VXSampleOutput.h"

#include <VXNetworking/VXNetworkSettings.h>
#include <VXNetworking/VXProxyFactory.h>

#include <QtCore/QCommandLineParser>
#include <QtCore/QJsonArray>
#include <QtCore/QUrl>

#include <algorithm>
#include <array>

using namespace Qt::StringLiterals;

namespace {

struct Verb
{
    QLatin1StringView name;
    int arguments; // with the verb
};

constexpr std::array verbs{Verb{"show"_L1, 1}, Verb{"set"_L1, 2}, Verb{"for"_L1, 2}};

struct Type
{
    QLatin1StringView name;
    QNetworkProxy::ProxyType type;
};

constexpr std::array types{Type{"http"_L1, QNetworkProxy::HttpProxy},
                           Type{"socks5"_L1, QNetworkProxy::Socks5Proxy}};

QString typeName(QNetworkProxy::ProxyType theType)
{
    const auto type = std::ranges::find(types, theType, &Type::type);
    return type == types.end() ? QString() : QString(type->name);
}

QJsonObject toJson(const VXNetworkSettings& theSettings)
{
    return {{u"choice"_s, theSettings.proxyChoice().encode()},
            {u"description"_s, theSettings.proxyAsString(theSettings.proxy())},
            {u"type"_s, typeName(theSettings.proxyType())},
            {u"host"_s, theSettings.proxyHostName()},
            {u"port"_s, static_cast<int>(theSettings.proxyPort())},
            {u"user"_s, theSettings.proxyUser()},
            {u"hasPassword"_s, !theSettings.proxyPassword().isEmpty()}};
}

} // namespace

void VXSampleProxyCommand::addOptions(QCommandLineParser& theParser) const
{
    theParser.addOptions({
        {u"host"_s, u"Host name of the user's own proxy."_s, u"NAME"_s},
        {u"port"_s, u"Its port."_s, u"N"_s},
        {u"type"_s, u"Its type."_s, u"http|socks5"_s},
        {u"user"_s, u"The user name there."_s, u"NAME"_s},
        {u"password-stdin"_s, u"Read the password from the first line of standard input."_s},
    });
}

VXSampleExitCode VXSampleProxyCommand::run(const QCommandLineParser& theArguments,
                                           VXSampleContext& theContext)
{
    const QStringList arguments = theArguments.positionalArguments();
    const auto verb = std::ranges::find_if(verbs, [&arguments](const Verb& theVerb) {
        return theVerb.name == arguments.constFirst();
    });
    if (verb == verbs.end() || arguments.size() != verb->arguments)
        return refuse(theContext, u"proxy: use show, set no|sys|my, or for URL"_s);

    if (verb->name == "show"_L1)
        return show(theArguments, theContext);
    return verb->name == "set"_L1 ? set(theArguments, theContext)
                                  : forUrl(theArguments, theContext);
}

VXSampleExitCode VXSampleProxyCommand::show(const QCommandLineParser& /*theArguments*/,
                                            VXSampleContext& theContext)
{
    theContext.output.result(toJson(*VXNetworkSettings::instance()));
    return VXSampleExitCode::Success;
}

VXSampleExitCode VXSampleProxyCommand::set(const QCommandLineParser& theArguments,
                                           VXSampleContext& theContext)
{
    VXNetworkSettings& settings = *VXNetworkSettings::instance();
    const QString complaint = apply(theArguments, settings);
    if (!complaint.isEmpty())
        return refuse(theContext, u"proxy: %1"_s.arg(complaint));
    settings.saveSettings();
    theContext.output.result(toJson(settings));
    return VXSampleExitCode::Success;
}

/// Changes the settings when everything can be read; returns what cannot.
QString VXSampleProxyCommand::apply(const QCommandLineParser& theArguments,
                                    VXNetworkSettings& theSettings)
{
    const QString name = theArguments.positionalArguments().at(1);
    static const QStringList choices{u"no"_s, u"sys"_s, u"my"_s}; // by value
    const qsizetype choice = choices.indexOf(name);
    if (choice < 0)
        return u"\"%1\" is none of no, sys, my"_s.arg(name);

    const auto type = std::ranges::find_if(types, [&theArguments](const Type& theType) {
        return theArguments.value(u"type"_s) == theType.name;
    });
    if (theArguments.isSet(u"type"_s) && type == types.end())
        return u"--type: \"%1\" is neither http nor socks5"_s.arg(theArguments.value(u"type"_s));

    QString complaint;
    int port = theSettings.proxyPort();
    if (theArguments.isSet(u"port"_s))
        port = VXSampleArguments::number(theArguments, u"port"_s, 0, 65535, &complaint).value_or(0);
    if (!complaint.isEmpty())
        return complaint;

    theSettings.setProxyChoice(static_cast<VXProxyChoiceEnum>(choice));
    theSettings.setProxyPort(port);
    if (theArguments.isSet(u"type"_s))
        theSettings.setProxyType(type->type);
    else if (theArguments.isSet(u"host"_s) && theSettings.proxyType() == QNetworkProxy::NoProxy)
        theSettings.setProxyType(QNetworkProxy::HttpProxy);
    if (theArguments.isSet(u"host"_s))
        theSettings.setProxyHostName(theArguments.value(u"host"_s));
    if (theArguments.isSet(u"user"_s))
        theSettings.setProxyUser(theArguments.value(u"user"_s));
    if (theArguments.isSet(u"password-stdin"_s))
        theSettings.setProxyPassword(VXSampleArguments::lineFromStandardInput());
    return {};
}

VXSampleExitCode VXSampleProxyCommand::forUrl(const QCommandLineParser& theArguments,
                                              VXSampleContext& theContext)
{
    const QUrl url(theArguments.positionalArguments().at(1));
    if (!url.isValid() || url.host().isEmpty())
        return refuse(theContext, u"proxy: \"%1\" is no address"_s.arg(url.toString()));

    const VXNetworkSettings& settings = *VXNetworkSettings::instance();
    QJsonArray list;
    for (const QNetworkProxy& proxy : VXProxyFactory().queryProxy(QNetworkProxyQuery(url)))
        list.append(settings.proxyAsString(proxy));
    theContext.output.result({{u"choice"_s, settings.proxyChoice().encode()},
                              {u"url"_s, url.toString(QUrl::RemovePassword)},
                              {u"description"_s, list}});
    return VXSampleExitCode::Success;
}
