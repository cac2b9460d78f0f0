// The browser login in a program of its own, for the tests in a browser.
//
//   login-host --url URL --assets DIR [--name NAME] [--stay]
//
// Writes one JSON object per line to standard output: "opened" (url) instead of starting a browser,
// and "ended" (accepted, code) after exec(). The dialog is destroyed right then; with --stay it
// goes on serving until standard input ends, which also cancels it before.

#include "VXTestEnvironment.h"

#include <VXCore/VXDeploymentConfig.h>
#include <VXCore/VXKeyAccountTexts.h>
#include <VXCore/VXPlatformIndependent.h>
#include <VXNetworking/VXOAuth2ExternalLoginDialog.h>

#include <QtCore/QCommandLineParser>
#include <QtCore/QJsonDocument>
#include <QtCore/QJsonObject>
#include <QtCore/QSocketNotifier>
#include <QtWidgets/QApplication>

#include <cstdio>
#include <memory>

#include <unistd.h>

using namespace Qt::StringLiterals;

namespace {

void report(const QString& theEvent, QJsonObject theDetails)
{
    theDetails.insert("event"_L1, theEvent);
    const QByteArray line = QJsonDocument(theDetails).toJson(QJsonDocument::Compact) + '\n';
    std::fwrite(line.constData(), 1, static_cast<size_t>(line.size()), stdout);
    std::fflush(stdout);
}

class Platform : public VXPlatformIndependent
{
public:
    bool openUrl(const QUrl& theUrl) override
    {
        report(u"opened"_s, {{u"url"_s, theUrl.toString(QUrl::FullyEncoded)}});
        return true;
    }
};

} // namespace

int main(int theArgumentCount, char* theArguments[])
{
    const VXTestEnvironment environment;
    QApplication application(theArgumentCount, theArguments);
    const QCommandLineOption url(u"url"_s, u"The provider's page"_s, u"URL"_s);
    const QCommandLineOption assets(u"assets"_s, u"Folder of the support page"_s, u"DIR"_s);
    const QCommandLineOption name(u"name"_s, u"The application's name"_s, u"NAME"_s, u"Fotowelt"_s);
    const QCommandLineOption stay(u"stay"_s, u"Keep the dialog"_s);
    QCommandLineParser parser;
    parser.addOptions({url, assets, name, stay});
    parser.process(application);

    VXDeploymentConfig::instance()->setValue(u"Assets/oAuthSupport"_s, parser.value(assets));
    VXKeyAccountTexts::instance()->setText(1, parser.value(name));
    VXPlatformIndependent::setInstance(std::make_unique<Platform>());

    auto dialog = std::make_unique<VXOAuth2ExternalLoginDialog>(QUrl(parser.value(url)), u"Test"_s);
    QSocketNotifier input(STDIN_FILENO, QSocketNotifier::Read);
    bool isOver = false;
    QObject::connect(&input, &QSocketNotifier::activated, &application, [&] {
        char byte = 0;
        if (::read(STDIN_FILENO, &byte, 1) > 0)
            return;
        input.setEnabled(false);
        isOver = true;
        dialog->reject();
        QCoreApplication::quit();
    });

    const bool isAccepted = dialog->exec() == QDialog::Accepted;
    const QString code = dialog->accessCode();
    if (!parser.isSet(stay))
        dialog.reset();
    report(u"ended"_s, {{u"accepted"_s, isAccepted}, {u"code"_s, code}});
    return dialog && !isOver ? QCoreApplication::exec() : 0;
}
