#pragma once

#include "VXSampleAnswers.h"
#include "VXSampleContext.h"
#include "VXSampleMainWindow.h"
#include "VXSampleOutput.h"
#include "VXSampleQuestions.h"
#include "VXSampleSimulator.h"
#include "VXSimulatorProcess.h"

#include <QtCore/QList>
#include <QtCore/QString>

#include <memory>

class QAction;
class QMenu;

/// The sample's main window before a user who sits there, against a simulator of its own.
class VXSampleWindowFixture
{
    Q_DISABLE_COPY_MOVE(VXSampleWindowFixture)

public:
    /// Starts the library and the simulator.
    VXSampleWindowFixture();
    ~VXSampleWindowFixture();

    /// Empty when the simulator is there.
    [[nodiscard]] QString errorText() const;

    /// Makes and shows a window; true when it has the keyboard.
    [[nodiscard]] bool open();

    /// Deletes the window.
    void close() { myWindow.reset(); }

    [[nodiscard]] VXSampleMainWindow& window() const { return *myWindow; }
    [[nodiscard]] const VXSimulatorProcess& simulator() const { return mySimulatorProcess; }

    /// A part of the window by its name. The same part may be on several pages; the one in view is
    /// meant.
    template <typename Widget>
    [[nodiscard]] Widget& part(const QString& theName) const
    {
        const QList<Widget*> parts = myWindow->findChildren<Widget*>(theName);
        for (Widget* widget : parts)
            if (widget->isVisible())
                return *widget;
        return *parts.constFirst();
    }

    /// The text of a label.
    [[nodiscard]] QString shown(const QString& theName) const;

    /// Chooses a page by its name in the list.
    void openPage(const QString& theTitle) const;

    /// Chooses an entry as with the mouse: a click on each menu on the way, then on the entry.
    /// False when there is none of that name.
    [[nodiscard]] bool chooseFromMenu(const QString& theActionName) const;

private:
    [[nodiscard]] QList<QAction*> pathTo(const QMenu& theMenu, const QString& theActionName) const;

    VXSimulatorProcess mySimulatorProcess;
    VXSampleOptions myOptions;
    VXSampleOutput myOutput;
    VXSampleSimulator mySimulator;
    VXSampleAnswers myAnswers;
    VXSampleQuestions myQuestions;
    VXSampleContext myContext;
    std::unique_ptr<VXSampleMainWindow> myWindow;
};
