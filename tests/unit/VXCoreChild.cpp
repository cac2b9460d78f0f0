// Another process of the application that a test runs as: reads and writes the same settings store,
// key and folders. Usage: VXCoreChild APPLICATION COMMAND [ARGUMENTS]; the answer is on standard
// output, UTF-8, without a line end.

#include <VXCore/VXBasisSettings.h>
#include <VXCore/VXConfigItem.h>
#include <VXCore/VXCrashDetector.h>
#include <VXCore/VXCrypto.h>
#include <VXCore/VXGeneralSettings.h>
#include <VXCore/VXSettings.h>

#include <QtCore/QCoreApplication>
#include <QtCore/QFile>
#include <QtCore/QMap>
#include <QtCore/QStringList>

#include <functional>

using namespace Qt::StringLiterals;

namespace {

using Command = std::function<QString(const QStringList&)>;

QString text(bool theValue)
{
    return theValue ? u"true"_s : u"false"_s;
}

// GROUP KEY
QString read(const QStringList& theArguments)
{
    VXSettings settings;
    settings.beginGroup(theArguments.at(0));
    return settings.value(theArguments.at(1), u"(none)"_s).toString();
}

// GROUP KEY VALUE
QString write(const QStringList& theArguments)
{
    VXSettings settings;
    settings.beginGroup(theArguments.at(0));
    return text(settings.writeEntry(theArguments.at(1), theArguments.at(2)));
}

// GROUP
QString proxy(const QStringList& theArguments)
{
    VXSettings settings;
    settings.beginGroup(theArguments.at(0));
    VXConfigItem<QNetworkProxy> item(u"Proxy"_s, QNetworkProxy(QNetworkProxy::NoProxy));
    item.load(settings);
    const QNetworkProxy value = item.value();
    return u"%1|%2|%3|%4|%5"_s.arg(QString::number(value.type()), value.hostName(),
                                   QString::number(value.port()), value.user(), value.password());
}

QString crashes(const QStringList&)
{
    const VXCrashDetector* detector = VXCrashDetector::instance();
    return text(detector->qtWebEngineDidCrashWithGpuOn()) + u' ' +
           text(detector->qtWebEngineDidCrashWithGpuOff());
}

const QMap<QString, Command>& commands()
{
    static const QMap<QString, Command> ourCommands{
        {u"crashes"_s, crashes},
        {u"decrypt"_s,
         [](const QStringList& theArguments) { return VXCrypto().decryptDES(theArguments.at(0)); }},
        {u"doNotTrack"_s,
         [](const QStringList&) { return text(VXGeneralSettings::instance()->doNotTrack()); }},
        {u"encrypt"_s,
         [](const QStringList& theArguments) { return VXCrypto().encryptDES(theArguments.at(0)); }},
        {u"proxy"_s, proxy},
        {u"read"_s, read},
        {u"temporaryDirectory"_s,
         [](const QStringList&) { return VXBasisSettings::instance()->temporaryDirectory(); }},
        {u"write"_s, write},
    };
    return ourCommands;
}

} // namespace

int main(int theArgumentCount, char* theArguments[])
{
    QCoreApplication application(theArgumentCount, theArguments);
    const QStringList arguments = application.arguments();
    if (arguments.size() < 3 || !commands().contains(arguments.at(2)))
        return 2;
    application.setApplicationName(arguments.at(1));

    const QString answer = commands().value(arguments.at(2))(arguments.sliced(3));
    QFile output;
    return output.open(stdout, QFile::WriteOnly) && output.write(answer.toUtf8()) >= 0 ? 0 : 1;
}
