#pragma once

#include <QtWidgets/QMainWindow>

class QListWidget;
class QMenu;
class QStackedWidget;
class VXSamplePanel;
class VXSampleRecordTabs;
class VXSampleUploadPanel;
struct VXSampleContext;

/// The main window: on the left what the library can do, in the middle the chosen page, below what
/// happened. Main thread.
class VXSampleMainWindow : public QMainWindow
{
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(VXSampleMainWindow)

public:
    /// `theContext` must outlive the window.
    explicit VXSampleMainWindow(VXSampleContext& theContext);
    ~VXSampleMainWindow() override;

protected:
    /// Ends what the pages are waiting for.
    void closeEvent(QCloseEvent* theEvent) override;

private:
    void createPages();
    void addPage(VXSamplePanel* thePage, const QString& theIcon);
    void showPage(int theIndex);
    void createProgramMenu();
    void createProblemMenu();
    void createUpdateMenu();
    void receivePhotos();
    void createSettingsMenu();
    void addSkins(QMenu* theMenu);
    void addLanguages(QMenu* theMenu);
    void changeLanguage(const QString& theTag);
    void editPreferences();
    void showAbout();

    VXSampleContext& myContext;
    QListWidget* myNavigation = nullptr; // children of this
    QStackedWidget* myPages = nullptr;
    VXSampleUploadPanel* myUploads = nullptr;
    VXSampleRecordTabs* myRecords = nullptr;
};
