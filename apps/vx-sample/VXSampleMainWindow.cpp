#include "VXSampleMainWindow.h"

#include "VXSampleCommand.h"
#include "VXSampleCommandTable.h"
#include "VXSamplePreferencesDialog.h"
#include "VXSampleProblems.h"

#include <VXCore/VXDeploymentConfig.h>
#include <VXCore/VXLogger.h>
#include <VXGUIWidgets/VXCSSSkinManager.h>
#include <VXNetworking/VXRequestNetwork.h>

#include <QtCore/QCommandLineParser>
#include <QtCore/QCoreApplication>
#include <QtGui/QActionGroup>
#include <QtWidgets/QLabel>
#include <QtWidgets/QMenu>
#include <QtWidgets/QMenuBar>
#include <QtWidgets/QPlainTextEdit>
#include <QtWidgets/QPushButton>
#include <QtWidgets/QVBoxLayout>

using namespace Qt::StringLiterals;

VXSampleMainWindow::VXSampleMainWindow(VXSampleContext& theContext)
    : myContext(theContext)
{
    setObjectName(u"mainWindow"_s);
    setWindowTitle(VXDeploymentConfig::instance()->text(u"Program/displayName"_s));
    createCentralWidget();
    createProblemMenu();
    createUpdateMenu();
    createSettingsMenu();
    resize(760, 480);

    connect(VXRequestNetwork::instance(), &VXRequestNetwork::enableLoginButton, myLogin,
            &QWidget::setEnabled);
    connect(VXLogger::instance(), &VXLogger::recordWritten, this,
            [this](const QString&, const QString& theText) { myLog->appendPlainText(theText); });
}

VXSampleMainWindow::~VXSampleMainWindow() = default;

void VXSampleMainWindow::createCentralWidget()
{
    auto* central = new QWidget(this);
    auto* hint = new QLabel(
        tr("Das Menü \"Netzwerkprobleme\" führt echte Fehler herbei. Was die Bibliothek dabei tut, "
           "steht unten."),
        central);
    hint->setWordWrap(true);
    myLogin = new QPushButton(tr("Anmelden"), central);
    myLogin->setObjectName(u"loginButton"_s);
    myLogin->setProperty("cssstyle", u"RegularPushButton"_s);
    connect(myLogin, &QPushButton::clicked, this, &VXSampleMainWindow::logIn);
    myLog = new QPlainTextEdit(central);
    myLog->setObjectName(u"logView"_s);
    myLog->setAccessibleName(tr("Protokoll"));
    myLog->setReadOnly(true);

    auto* layout = new QVBoxLayout(central);
    layout->addWidget(hint);
    layout->addWidget(myLogin, 0, Qt::AlignLeft);
    layout->addWidget(myLog, 1);
    setCentralWidget(central);
}

void VXSampleMainWindow::createProblemMenu()
{
    myProblems = menuBar()->addMenu(tr("&Netzwerkprobleme"));
    myProblems->setObjectName(u"problemMenu"_s);
    for (const VXSampleProblem& problem : VXSampleProblems::all()) {
        QAction* action =
            myProblems->addAction(QCoreApplication::translate("VXSampleProblems", problem.title));
        action->setObjectName(problem.name);
        connect(action, &QAction::triggered, this, [this, &problem] { cause(problem); });
    }
}

void VXSampleMainWindow::createUpdateMenu()
{
    QMenu* menu = menuBar()->addMenu(tr("&Anmeldung und Aktualisierung"));
    menu->setObjectName(u"updateMenu"_s);
    const auto add = [&](const QString& theTitle, const QString& theName,
                         const QStringList& theArguments) {
        QAction* action = menu->addAction(theTitle);
        action->setObjectName(theName);
        connect(action, &QAction::triggered, this,
                [this, theArguments] { runCommand(theArguments); });
    };
    add(tr("Anmelden in einer Seite..."), u"loginEmbedded"_s, {u"login"_s, u"embedded"_s});
    add(tr("Aktualisierung..."), u"update"_s, {u"update"_s});
    add(tr("Notwendige Aktualisierung..."), u"updateMandatory"_s, {u"update"_s, u"--mandatory"_s});
}

void VXSampleMainWindow::createSettingsMenu()
{
    QMenu* menu = menuBar()->addMenu(tr("&Einstellungen"));
    QAction* network = menu->addAction(tr("Netzwerk..."));
    network->setObjectName(u"networkPreferences"_s);
    connect(network, &QAction::triggered, this, &VXSampleMainWindow::editPreferences);
    menu->addSeparator();

    auto* skins = new QActionGroup(this);
    const auto addSkin = [&](const QString& theTitle, int theMode) {
        QAction* action = skins->addAction(menu->addAction(theTitle));
        action->setCheckable(true);
        action->setChecked(VXCSSSkinManager::instance()->currentMode() == theMode);
        connect(action, &QAction::triggered, this,
                [theMode] { VXCSSSkinManager::instance()->setMode(theMode); });
    };
    addSkin(tr("Hell"), VXCSSSkinManager::Light);
    addSkin(tr("Dunkel"), VXCSSSkinManager::Dark);
}

void VXSampleMainWindow::cause(const VXSampleProblem& theProblem)
{
    myProblems->setEnabled(false); // an exchange handles events: one problem at a time
    VXSampleProblemScene scene{myContext, this};
    VXSampleProblems::run(theProblem, scene);
    myProblems->setEnabled(true);
}

void VXSampleMainWindow::logIn()
{
    cause(*VXSampleProblems::find(u"login-wait"_s));
}

/// What the command line does; the result goes to standard output.
void VXSampleMainWindow::runCommand(const QStringList& theArguments)
{
    const auto command = VXSampleCommandTable::find(theArguments.constFirst())->create();
    QCommandLineParser parser;
    command->addOptions(parser);
    parser.parse(theArguments);
    menuBar()->setEnabled(false); // an exchange handles events: one command at a time
    command->run(parser, myContext);
    menuBar()->setEnabled(true);
}

void VXSampleMainWindow::editPreferences()
{
    VXSamplePreferencesDialog(this).exec();
}
