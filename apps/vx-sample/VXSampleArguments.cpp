#include "VXSampleArguments.h"

#include <QtCore/QCommandLineParser>
#include <QtCore/QFile>

#include <algorithm>
#include <array>
#include <iostream>
#include <string>

using namespace Qt::StringLiterals;

namespace {

struct Method
{
    QLatin1StringView name;
    QNetworkAccessManager::Operation operation;
};

constexpr std::array methods{
    Method{"HEAD"_L1, QNetworkAccessManager::HeadOperation},
    Method{"GET"_L1, QNetworkAccessManager::GetOperation},
    Method{"PUT"_L1, QNetworkAccessManager::PutOperation},
    Method{"POST"_L1, QNetworkAccessManager::PostOperation},
    Method{"DELETE"_L1, QNetworkAccessManager::DeleteOperation},
};

} // namespace

std::optional<QNetworkAccessManager::Operation> VXSampleArguments::operation(const QString& theName)
{
    const auto method = std::ranges::find_if(methods, [&theName](const Method& theMethod) {
        return theName.compare(theMethod.name, Qt::CaseInsensitive) == 0;
    });
    if (method == methods.end())
        return std::nullopt;
    return method->operation;
}

void VXSampleArguments::addTimeout(QCommandLineParser& theParser, int theDefault)
{
    theParser.addOption({u"timeout"_s, u"Give the exchange up after S seconds; -1: never."_s,
                         u"S"_s, QString::number(theDefault)});
}

std::optional<int> VXSampleArguments::number(const QCommandLineParser& theParser,
                                             const QString& theName, int theLeast, int theMost,
                                             QString* theErrorText)
{
    bool isNumber = false;
    const int value = theParser.value(theName).toInt(&isNumber);
    if (isNumber && value >= theLeast && value <= theMost)
        return value;
    *theErrorText = u"--%1: \"%2\" is no number from %3 to %4"_s.arg(
        theName, theParser.value(theName), QString::number(theLeast), QString::number(theMost));
    return std::nullopt;
}

QString VXSampleArguments::lineFromStandardInput()
{
    std::string line;
    std::getline(std::cin, line);
    return QString::fromStdString(line);
}

QByteArray VXSampleArguments::textOrFile(const QString& theValue, QString* theErrorText)
{
    if (!theValue.startsWith(u'@'))
        return theValue.toUtf8();

    QFile file(theValue.sliced(1));
    if (!file.open(QIODevice::ReadOnly)) {
        *theErrorText = u"cannot read \"%1\": %2"_s.arg(file.fileName(), file.errorString());
        return {};
    }
    return file.readAll();
}
