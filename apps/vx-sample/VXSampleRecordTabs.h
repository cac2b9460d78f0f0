#pragma once

#include <QtWidgets/QTabWidget>

class QPlainTextEdit;
class QTableView;
class VXSampleServiceModel;
struct VXSampleContext;

/// The lower part of the main window: the library's records of its requests, its whole log, what
/// the simulator received, and the log of photo uploads. Main thread.
class VXSampleRecordTabs : public QTabWidget
{
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(VXSampleRecordTabs)

public:
    /// `theContext` must outlive this widget.
    VXSampleRecordTabs(VXSampleContext& theContext, QWidget* theParent);
    ~VXSampleRecordTabs() override;

    /// Asks the simulator what it received since the last time.
    void refresh();

private:
    QPlainTextEdit* addLog(const QString& theTitle, const QString& theObjectName,
                           const QString& theEmptyText);
    void addService();
    void addRecord(const QString& theChannel, const QString& theText);

    VXSampleContext& myContext;
    QPlainTextEdit* myRequests = nullptr; // children of this
    QPlainTextEdit* myUploads = nullptr;
    QPlainTextEdit* myLog = nullptr;
    VXSampleServiceModel* myService = nullptr;
    QTableView* myServiceView = nullptr;
};
