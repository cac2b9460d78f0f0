#include "VXSampleWindowFixture.h"

#include <VXCore/VXInitializer.h>
#include <VXCore/VXInitializerOption.h>
#include <VXGUIWidgets/VXRequest.h>

#include <QtTest/QTest>
#include <QtWidgets/QLabel>
#include <QtWidgets/QListWidget>
#include <QtWidgets/QMenu>
#include <QtWidgets/QMenuBar>

VXSampleWindowFixture::VXSampleWindowFixture()
    : mySimulator(mySimulatorProcess.readyFile())
    , myAnswers(myOutput)
    , myContext{myOptions, myOutput, mySimulator, myAnswers}
{
    VXInitializer::instance()->runSetup(VXInitializerOption::Headless); // the engine's, as a host
    mySimulator.open();
    myAnswers.setUserIsThere(true);
    VXRequest::setDialogDriver(&myAnswers);
}

VXSampleWindowFixture::~VXSampleWindowFixture() = default;

QString VXSampleWindowFixture::errorText() const
{
    return mySimulatorProcess.errorText() + mySimulator.errorText();
}

bool VXSampleWindowFixture::open()
{
    myWindow = std::make_unique<VXSampleMainWindow>(myContext);
    myWindow->show();
    return QTest::qWaitForWindowActive(myWindow.get());
}

QString VXSampleWindowFixture::shown(const QString& theName) const
{
    return part<QLabel>(theName).text();
}

void VXSampleWindowFixture::openPage(const QString& theTitle) const
{
    auto& navigation = part<QListWidget>(QStringLiteral("navigation"));
    const auto items = navigation.findItems(theTitle, Qt::MatchExactly);
    QCOMPARE(items.size(), 1);
    navigation.setCurrentItem(items.constFirst());
}

/// The entries that lead to it, outermost first; empty when it is not below that menu.
QList<QAction*> VXSampleWindowFixture::pathTo(const QMenu& theMenu,
                                              const QString& theActionName) const
{
    for (QAction* action : theMenu.actions()) {
        if (action->objectName() == theActionName)
            return {action};
        const QList<QAction*> below =
            action->menu() ? pathTo(*action->menu(), theActionName) : QList<QAction*>();
        if (!below.isEmpty())
            return QList<QAction*>{action} + below;
    }
    return {};
}

bool VXSampleWindowFixture::chooseFromMenu(const QString& theActionName) const
{
    QMenuBar* const bar = myWindow->menuBar();
    for (QAction* top : bar->actions()) {
        const QList<QAction*> path = pathTo(*top->menu(), theActionName);
        if (path.isEmpty())
            continue;
        QTest::mouseClick(bar, Qt::LeftButton, {}, bar->actionGeometry(top).center());
        QMenu* menu = top->menu();
        for (QAction* action : path) {
            QMenu* const next = action->menu();
            QTest::mouseClick(menu, Qt::LeftButton, {}, menu->actionGeometry(action).center());
            if (next && !QTest::qWaitFor([next] { return next->isVisible(); }))
                return false;
            menu = next;
        }
        return true;
    }
    return false;
}
