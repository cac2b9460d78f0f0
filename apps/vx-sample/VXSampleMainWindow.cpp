#include "VXSampleMainWindow.h"

#include "VXSampleCommandRun.h"
#include "VXSampleContext.h"
#include "VXSampleHttpPanel.h"
#include "VXSampleLoginPanel.h"
#include "VXSampleOrderPanel.h"
#include "VXSamplePreferencesDialog.h"
#include "VXSampleProblemPanel.h"
#include "VXSampleProblems.h"
#include "VXSampleRecordTabs.h"
#include "VXSampleUploadPanel.h"
#include "VXSampleWebPanel.h"

#include <VXCore/VXDeploymentConfig.h>
#include <VXCore/VXLocaleAndTranslationManager.h>
#include <VXGUIWidgets/VXCSSSkinManager.h>
#include <VXGUIWidgets/VXGUIWidgetsConfig.h>

#include <QtCore/QCoreApplication>
#include <QtCore/QProcess>
#include <QtGui/QActionGroup>
#include <QtGui/QIcon>
#include <QtGui/QScreen>
#include <QtWidgets/QLabel>
#include <QtWidgets/QListWidget>
#include <QtWidgets/QMenu>
#include <QtWidgets/QMenuBar>
#include <QtWidgets/QMessageBox>
#include <QtWidgets/QSplitter>
#include <QtWidgets/QStackedWidget>

using namespace Qt::StringLiterals;

namespace {

constexpr QSize firstSize(1180, 700); // fits on 1366 x 768 with a task bar
constexpr int navigationWidth = 190;
constexpr int recordHeight = 180;
constexpr QSize pageIconSize(24, 24);

/// The same picture for the chosen page: Qt would tint it.
QIcon pageIcon(const QString& theName)
{
    const QPixmap picture = VXGUIWidgetsConfig::loadPixmapById(theName);
    QIcon icon(picture);
    icon.addPixmap(picture, QIcon::Selected);
    return icon;
}

} // namespace

VXSampleMainWindow::VXSampleMainWindow(VXSampleContext& theContext)
    : myContext(theContext)
{
    setObjectName(u"mainWindow"_s);
    setWindowTitle(VXDeploymentConfig::instance()->text(u"Program/displayName"_s));
    createPages();
    createProgramMenu();
    createProblemMenu();
    createUpdateMenu();
    createSettingsMenu();
    resize(firstSize.boundedTo(screen()->availableSize()));
}

VXSampleMainWindow::~VXSampleMainWindow() = default;

void VXSampleMainWindow::createPages()
{
    myNavigation = new QListWidget(this);
    myNavigation->setObjectName(u"navigation"_s);
    myNavigation->setAccessibleName(tr("Was die Bibliothek kann"));
    myNavigation->setProperty("cssstyle", u"navigation"_s);
    myNavigation->setFrameShape(QFrame::NoFrame);
    myNavigation->setIconSize(pageIconSize);
    myPages = new QStackedWidget(this);
    myPages->setObjectName(u"pages"_s);
    myUploads = new VXSampleUploadPanel(myPages);
    addPage(new VXSampleHttpPanel(myContext, myPages), u"ico_page_http"_s);
    addPage(new VXSampleOrderPanel(myContext, myPages), u"ico_page_order"_s);
    addPage(new VXSampleProblemPanel(myContext, myPages), u"ico_page_problem"_s);
    addPage(new VXSampleLoginPanel(myContext, myPages), u"ico_page_login"_s);
    addPage(new VXSampleWebPanel(myContext, myPages), u"ico_page_web"_s);
    addPage(myUploads, u"ico_page_photos"_s);
    myRecords = new VXSampleRecordTabs(myContext, this); // after the pages: the Tab key's order
    connect(myNavigation, &QListWidget::currentRowChanged, this, &VXSampleMainWindow::showPage);
    myNavigation->setCurrentRow(0);
    myNavigation->setMinimumWidth(myNavigation->sizeHintForColumn(0));
    myNavigation->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);

    auto* upper = new QSplitter(Qt::Horizontal, this);
    upper->addWidget(myNavigation);
    upper->addWidget(myPages);
    upper->setSizes({navigationWidth, firstSize.width() - navigationWidth});
    upper->setStretchFactor(1, 1);
    auto* all = new QSplitter(Qt::Vertical, this);
    all->addWidget(upper);
    all->addWidget(myRecords);
    all->setSizes({firstSize.height() - recordHeight, recordHeight});
    all->setStretchFactor(0, 3);
    all->setStretchFactor(1, 1);
    setCentralWidget(all);
}

void VXSampleMainWindow::addPage(VXSamplePanel* thePage, const QString& theIcon)
{
    myPages->addWidget(thePage);
    auto* item = new QListWidgetItem(pageIcon(theIcon), thePage->title(), myNavigation);
    // With the skin's margins, so that no name is cut off.
    const int height = fontMetrics().height();
    item->setSizeHint(
        {fontMetrics().horizontalAdvance(thePage->title()) + pageIconSize.width() + 3 * height,
         height * 5 / 2});
    connect(thePage, &VXSamplePanel::exchanged, this, [this] { myRecords->refresh(); });
}

void VXSampleMainWindow::showPage(int theIndex)
{
    myPages->setCurrentIndex(theIndex);
    static_cast<VXSamplePanel*>(myPages->currentWidget())->activate();
}

void VXSampleMainWindow::createProgramMenu()
{
    QMenu* menu = menuBar()->addMenu(tr("&Programm"));
    QAction* photos = menu->addAction(tr("&Fotos vom Telefon empfangen ..."));
    photos->setObjectName(u"receivePhotos"_s);
    connect(photos, &QAction::triggered, this, &VXSampleMainWindow::receivePhotos);
    menu->addSeparator();
    QAction* about = menu->addAction(tr("&Über dieses Programm"));
    about->setObjectName(u"about"_s);
    connect(about, &QAction::triggered, this, &VXSampleMainWindow::showAbout);
    menu->addSeparator();
    QAction* quit = menu->addAction(tr("&Beenden"));
    quit->setObjectName(u"quit"_s);
    quit->setShortcut(QKeySequence(u"Ctrl+Q"_s)); // not every desktop names one
    connect(quit, &QAction::triggered, this, &QWidget::close);
}

void VXSampleMainWindow::createProblemMenu()
{
    QMenu* menu = menuBar()->addMenu(tr("&Netzwerkprobleme"));
    menu->setObjectName(u"problemMenu"_s);
    for (const VXSampleProblem& problem : VXSampleProblems::all()) {
        QAction* action =
            menu->addAction(QCoreApplication::translate("VXSampleProblems", problem.title));
        action->setObjectName(problem.name);
        connect(action, &QAction::triggered, this, [this, menu, &problem] {
            menu->setEnabled(false); // an exchange handles events: one problem at a time
            VXSampleProblemScene scene{myContext, this};
            VXSampleProblems::run(problem, scene);
            menu->setEnabled(true);
            myRecords->refresh();
        });
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
        connect(action, &QAction::triggered, this, [this, menu, theArguments] {
            menu->setEnabled(false); // an exchange handles events: one command at a time
            const VXSampleCommandRun run(theArguments, myContext);
            menu->setEnabled(true);
            myRecords->refresh();
        });
    };
    add(tr("Anmelden auf der &Seite des Anbieters ..."), u"loginEmbedded"_s,
        {u"login"_s, u"embedded"_s});
    add(tr("Anmelden im eigenen &Browser ..."), u"loginExternal"_s, {u"login"_s, u"external"_s});
    menu->addSeparator();
    add(tr("&Aktualisierung ..."), u"update"_s, {u"update"_s});
    add(tr("&Notwendige Aktualisierung ..."), u"updateMandatory"_s,
        {u"update"_s, u"--mandatory"_s});
}

/// On its page, which shows the photos as they come.
void VXSampleMainWindow::receivePhotos()
{
    myNavigation->setCurrentRow(myPages->indexOf(myUploads));
    myUploads->showDialog();
}

void VXSampleMainWindow::createSettingsMenu()
{
    QMenu* menu = menuBar()->addMenu(tr("&Einstellungen"));
    QAction* network = menu->addAction(tr("&Netzwerk ..."));
    network->setObjectName(u"networkPreferences"_s);
    network->setShortcut(QKeySequence(u"Ctrl+,"_s));
    connect(network, &QAction::triggered, this, &VXSampleMainWindow::editPreferences);
    addSkins(menu->addMenu(tr("&Aussehen")));
    addLanguages(menu->addMenu(tr("&Sprache")));
}

void VXSampleMainWindow::addSkins(QMenu* theMenu)
{
    auto* skins = new QActionGroup(this);
    const auto add = [&](const QString& theTitle, const QString& theName, int theMode) {
        QAction* action = skins->addAction(theMenu->addAction(theTitle));
        action->setObjectName(theName);
        action->setCheckable(true);
        action->setChecked(VXCSSSkinManager::instance()->currentMode() == theMode);
        connect(action, &QAction::triggered, this,
                [theMode] { VXCSSSkinManager::instance()->setMode(theMode); });
    };
    add(tr("&Hell"), u"skin-light"_s, VXCSSSkinManager::Light);
    add(tr("&Dunkel"), u"skin-dark"_s, VXCSSSkinManager::Dark);
}

void VXSampleMainWindow::addLanguages(QMenu* theMenu)
{
    auto* languages = new QActionGroup(this);
    const QString current = VXLocaleAndTranslationManager::instance()->bcp47Name();
    const auto add = [&](const QString& theTitle, const QString& theTag) {
        QAction* action = languages->addAction(theMenu->addAction(theTitle));
        action->setObjectName(u"language-"_s + theTag);
        action->setCheckable(true);
        action->setChecked(current.startsWith(theTag));
        connect(action, &QAction::triggered, this, [this, theTag] { changeLanguage(theTag); });
    };
    add(u"&Deutsch"_s, u"de"_s); // each language in its own words
    add(u"&English"_s, u"en"_s);
}

/// The error texts keep the language of their first use, so another one needs another start.
void VXSampleMainWindow::changeLanguage(const QString& theTag)
{
    if (VXLocaleAndTranslationManager::instance()->bcp47Name().startsWith(theTag))
        return;
    const auto answer = QMessageBox::question(
        this, tr("Sprache"), tr("Die Sprache wechselt mit einem Neustart. Jetzt neu starten?"));
    if (answer != QMessageBox::Yes)
        return;
    QStringList arguments = QCoreApplication::arguments().sliced(1);
    arguments = QStringList{u"--language"_s, theTag} + arguments; // a later one would win
    const auto isWhole = [](const QString& theText) {
        return theText.startsWith("--language="_L1);
    };
    arguments.removeIf(isWhole);
    const qsizetype older = arguments.indexOf(u"--language"_s, 2);
    if (older >= 0)
        arguments.remove(older, 2);
    if (QProcess::startDetached(QCoreApplication::applicationFilePath(), arguments))
        close();
}

void VXSampleMainWindow::editPreferences()
{
    VXSamplePreferencesDialog(this).exec();
}

void VXSampleMainWindow::showAbout()
{
    QMessageBox::about(
        this, tr("Über dieses Programm"),
        tr("%1 %2\n\nDas Beispielprogramm der Netzwerkbibliothek VXNetworking. Es spricht nur mit "
           "dem eingebauten Dienst auf diesem Rechner, außer wenn Sie eine andere Adresse "
           "eingeben.")
            .arg(windowTitle(), QCoreApplication::applicationVersion()));
}

void VXSampleMainWindow::closeEvent(QCloseEvent* theEvent)
{
    for (int i = 0; i < myPages->count(); ++i)
        static_cast<VXSamplePanel*>(myPages->widget(i))->cancel();
    QMainWindow::closeEvent(theEvent);
}
