#pragma once

#include <QtWidgets/QMainWindow>

class QMenu;
class QPlainTextEdit;
class QPushButton;
struct VXSampleContext;
struct VXSampleProblem;

/// The main window: a menu of network problems, the network settings, the skins, and a login
/// button that is disabled while a refused login has to wait. Main thread.
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
    void createSettingsMenu();
    void cause(const VXSampleProblem& theProblem);
    void logIn();
    void editPreferences();

    VXSampleContext& myContext;
    QMenu* myProblems = nullptr; // children of this
    QPushButton* myLogin = nullptr;
    QPlainTextEdit* myLog = nullptr;
};
