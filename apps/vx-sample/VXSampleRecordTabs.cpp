#include "VXSampleRecordTabs.h"

#include "VXSampleContext.h"
#include "VXSampleServiceModel.h"
#include "VXSampleSimulator.h"

#include <VXCore/VXLogger.h>

#include <QtGui/QFontDatabase>
#include <QtWidgets/QHeaderView>
#include <QtWidgets/QPlainTextEdit>
#include <QtWidgets/QTableView>

using namespace Qt::StringLiterals;

namespace {

constexpr int mostLines = 5'000;
constexpr int addressWidth = 360; // pixels; the user may change it

} // namespace

VXSampleRecordTabs::VXSampleRecordTabs(VXSampleContext& theContext, QWidget* theParent)
    : QTabWidget(theParent)
    , myContext(theContext)
{
    setObjectName(u"recordTabs"_s);
    setDocumentMode(true);
    myRequests = addLog(tr("Anfragen"), u"requestView"_s, tr("Noch keine Anfrage."));
    addService();
    myUploads = addLog(tr("Foto-Protokoll"), u"uploadView"_s, tr("Noch kein Foto empfangen."));
    myLog = addLog(tr("Protokoll"), u"logView"_s, tr("Noch nichts geschehen."));
    connect(VXLogger::instance(), &VXLogger::recordWritten, this, &VXSampleRecordTabs::addRecord);
}

VXSampleRecordTabs::~VXSampleRecordTabs() = default;

QPlainTextEdit* VXSampleRecordTabs::addLog(const QString& theTitle, const QString& theObjectName,
                                           const QString& theEmptyText)
{
    auto* view = new QPlainTextEdit(this);
    view->setObjectName(theObjectName);
    view->setAccessibleName(theTitle);
    view->setPlaceholderText(theEmptyText);
    view->setReadOnly(true);
    view->setTabChangesFocus(true);
    view->setLineWrapMode(QPlainTextEdit::NoWrap);
    view->setMaximumBlockCount(mostLines);
    view->setFont(QFontDatabase::systemFont(QFontDatabase::FixedFont));
    addTab(view, theTitle);
    return view;
}

void VXSampleRecordTabs::addService()
{
    myService = new VXSampleServiceModel(this);
    myServiceView = new QTableView(this);
    myServiceView->setObjectName(u"serviceView"_s);
    myServiceView->setAccessibleName(tr("Was der Dienst empfing"));
    myServiceView->setModel(myService);
    myServiceView->setSelectionBehavior(QAbstractItemView::SelectRows);
    myServiceView->setTabKeyNavigation(false);
    myServiceView->setAlternatingRowColors(true);
    myServiceView->setShowGrid(false);
    myServiceView->verticalHeader()->hide();
    constexpr int addressColumn = 3;
    myServiceView->setColumnWidth(addressColumn, addressWidth);
    myServiceView->horizontalHeader()->setStretchLastSection(true);
    connect(myService, &QAbstractItemModel::rowsInserted, myServiceView,
            &QTableView::scrollToBottom);
    addTab(myServiceView, tr("Dienst"));
}

void VXSampleRecordTabs::refresh()
{
    myService->refresh(myContext.simulator.port(u"control"_s));
}

/// Workers log too; the connection brings their records into this thread.
void VXSampleRecordTabs::addRecord(const QString& theChannel, const QString& theText)
{
    if (theChannel == "qrupload"_L1) {
        myUploads->appendPlainText(theText);
        return;
    }
    myLog->appendPlainText(theText);
    if (theText.startsWith(" -- "_L1) || theText.startsWith("TOV NETREQUEST"_L1))
        myRequests->appendPlainText(theText);
}
