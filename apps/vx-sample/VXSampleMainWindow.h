#pragma once

#include <QtWidgets/QMainWindow>

class QMenu;
class QPlainTextEdit;
class QPushButton;
struct VXSampleContext;
struct VXSampleProblem;

/// The main window: a menu of network problems, one of the login in a page and of updates, the
/// network settings, the skins, and a login button that is disabled while a refused login has to
/// wait. Main thread.
class VXSampleMainWindow : public QMainWindow
{
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(VXSampleMainWindow)

public:
    /// `theContext` must outlive the window.
    explicit VXSampleMainWindow(VXSampleContext& theContext);
    ~VXSampleMainWindow() override;

private:
    void createCentralWidget();
    void createProblemMenu();
    void createUpdateMenu();
    void createSettingsMenu();
    void cause(const VXSampleProblem& theProblem);
    void logIn();
    void runCommand(const QStringList& theArguments);
    void editPreferences();

    VXSampleContext& myContext;
    QMenu* myProblems = nullptr; // children of this
    QPushButton* myLogin = nullptr;
    QPlainTextEdit* myLog = nullptr;
};
