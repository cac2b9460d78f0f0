#include "VXLocalUploadServiceView.h"

#include "VXLocalUploadService.h"

#include <VXCore/VXLogger.h>
#include <VXCore/VXMainWindowHandle.h>
#include <VXGUIWidgets/VXQRCodeWidget.h>

#include <QtCore/QDebug>
#include <QtCore/QEvent>
#include <QtCore/QStandardPaths>
#include <QtGui/QTextCursor>
#include <QtGui/QTextDocument>
#include <QtWidgets/QDialog>
#include <QtWidgets/QFileDialog>
#include <QtWidgets/QGridLayout>
#include <QtWidgets/QLabel>
#include <QtWidgets/QLineEdit>
#include <QtWidgets/QPushButton>
#include <QtWidgets/QSpacerItem>
#include <QtWidgets/QTextBrowser>

using namespace Qt::StringLiterals;

namespace {

constexpr int refreshInterval = 5000;   // milliseconds
constexpr int margin = 24;              // pixels
constexpr int spacerHeight = 5;         // pixels
constexpr QSize dialogSize(315, 513);   // pixels
constexpr int maximumLogSize = 200'000; // characters; the log is one paragraph, slower with each

/// The rows of the dialog from top to bottom.
enum Row
{
    TitleRow,
    SpaceAboveCodeRow,
    CodeRow,
    SpaceBelowCodeRow,
    ConnectionRow,
    SpaceBelowConnectionRow,
    NetworkTitleRow,
    NetworkRow,
    SpaceBelowNetworkRow,
    FolderTitleRow,
    FolderRow,
    ChangeRow
};

/// Opens no file that its text names: the name of a wireless network may be markup, and the style
/// sheet in it "/dev/zero".
class LogBrowser : public QTextBrowser
{
    Q_DISABLE_COPY_MOVE(LogBrowser)

public:
    using QTextBrowser::QTextBrowser;
    ~LogBrowser() override = default;

    QVariant loadResource(int /*theType*/, const QUrl& /*theName*/) override
    {
        return QByteArray(""); // not null, or the document would look itself
    }
};

void logAction(const QString& theAction)
{
    VXLogger::instance()->logQRUpload(u"ACTION:"_s + theAction);
}

/// Empty when the user chose none. No static function of QFileDialog, whose dialog stands on the
/// stack: theParent may die while it is open, and takes it along.
QString askForFolder(QWidget* theParent, const QString& theTitle)
{
    const QPointer<QFileDialog> chooser = new QFileDialog(
        theParent, theTitle, QStandardPaths::writableLocation(QStandardPaths::PicturesLocation));
    chooser->setFileMode(QFileDialog::Directory);
    chooser->setOption(QFileDialog::ShowDirsOnly);
    const bool isChosen = chooser->exec() == QDialog::Accepted;
    if (!chooser)
        return {};
    QString folder = isChosen ? chooser->selectedFiles().value(0) : QString();
    delete chooser;
    return folder;
}

void addSpace(QGridLayout* theLayout, int theRow)
{
    theLayout->addItem(new QSpacerItem(0, spacerHeight, QSizePolicy::Minimum, QSizePolicy::Fixed),
                       theRow, 0); // the layout's
}

} // namespace

VXLocalUploadServiceView::VXLocalUploadServiceView(QWidget* theParent)
    : QObject(theParent)
    , myService(new VXLocalUploadService(this))
    , myRefreshTimer(this)
{
    connect(myService, &VXLocalUploadService::doLog, this, &VXLocalUploadServiceView::log);
    connect(myService, &VXLocalUploadService::urlChanged, this,
            &VXLocalUploadServiceView::onUrlChanged);
    connect(myService, &VXLocalUploadService::filesUploaded, this,
            &VXLocalUploadServiceView::filesUploaded);

    myRefreshTimer.setInterval(refreshInterval);
    myRefreshTimer.setSingleShot(false);
    connect(&myRefreshTimer, &QTimer::timeout, myService, &VXLocalUploadService::updateConnections);
}

VXLocalUploadServiceView::~VXLocalUploadServiceView()
{
    if (!myDialog)
        return;
    // Nobody is admitted by the code any more, so nobody should scan it.
    myDialog->hide();
    myQRCodeWidget->setUrl(QUrl(), QString());
}

void VXLocalUploadServiceView::setAnchorWidget(QWidget* theAnchor)
{
    myAnchorWidget = theAnchor;
}

void VXLocalUploadServiceView::show()
{
    if (!myDialog)
        init();
    if (myAnchorWidget)
        myDialog->move(myAnchorWidget->mapToGlobal(QPoint(0, myAnchorWidget->height())));
    myQRCodeWidget->animateIn();
    myDialog->show();
    myDialog->raise();
    logAction(u"showDialog"_s);
}

void VXLocalUploadServiceView::init()
{
    myDialog = new QDialog(VXMainWindowHandle::mainWindow()); // the main window's
    myDialog->installEventFilter(this);
    myDialog->setWindowTitle(tr("QR-Code scannen"));
    myDialog->resize(dialogSize);
    fillDialog();
    makeLogBrowser();

    myService->start();
    logAction(u"createDialog"_s);
}

void VXLocalUploadServiceView::fillDialog()
{
    auto* const layout = new QGridLayout(myDialog);
    layout->setContentsMargins(margin, margin, margin, margin);

    QLabel* const title =
        addTitle(layout, TitleRow,
                 tr("Scannen Sie den QR-Code, um Fotos von Ihrem Mobiltelefon auf dieses Gerät zu "
                    "übertragen."));
    title->setWordWrap(true);
    addSpace(layout, SpaceAboveCodeRow);

    myQRCodeWidget = new VXQRCodeWidget(myDialog);
    layout->addWidget(myQRCodeWidget, CodeRow, 0, Qt::AlignCenter);
    addSpace(layout, SpaceBelowCodeRow);

    myConnectionButton = addLink(layout, ConnectionRow, tr("Andere Verbindung probieren"));
    connect(myConnectionButton, &QPushButton::clicked, myService,
            &VXLocalUploadService::nextConnection);
    addSpace(layout, SpaceBelowConnectionRow);

    addTitle(layout, NetworkTitleRow, tr("Beide Geräte benötigen dasselbe WLAN"));
    myNetworkLabel = new QLabel(myDialog);
    myNetworkLabel->setEnabled(false);
    myNetworkLabel->setAlignment(Qt::AlignTop);
    // A network may call itself anything, HTML too, and the reason of a failure is long.
    myNetworkLabel->setTextFormat(Qt::PlainText);
    myNetworkLabel->setWordWrap(true);
    layout->addWidget(myNetworkLabel, NetworkRow, 0);
    addSpace(layout, SpaceBelowNetworkRow);

    addTitle(layout, FolderTitleRow, tr("Speicherort"));
    auto* const folder = new QLineEdit(myService->targetFolder(), myDialog);
    folder->setReadOnly(true);
    connect(myService, &VXLocalUploadService::targetFolderChanged, folder, &QLineEdit::setText);
    layout->addWidget(folder, FolderRow, 0);
    QPushButton* const change = addLink(layout, ChangeRow, tr("Ändern"));
    connect(change, &QPushButton::clicked, this, &VXLocalUploadServiceView::chooseTargetFolder);
}

QLabel* VXLocalUploadServiceView::addTitle(QGridLayout* theLayout, int theRow,
                                           const QString& theText)
{
    auto* const label = new QLabel(boldify(theText), myDialog);
    theLayout->addWidget(label, theRow, 0);
    return label;
}

QPushButton* VXLocalUploadServiceView::addLink(QGridLayout* theLayout, int theRow,
                                               const QString& theText)
{
    auto* const button = new QPushButton(theText, myDialog);
    button->setProperty("cssstyle", u"hyperlinkStyle"_s);
    button->setCursor(Qt::PointingHandCursor);
    button->setAutoDefault(false); // else Return would press it
    theLayout->addWidget(button, theRow, 0, Qt::AlignRight);
    return button;
}

void VXLocalUploadServiceView::makeLogBrowser()
{
    myLogBrowser = new LogBrowser(myDialog);
    myLogBrowser->setReadOnly(true);
    myLogBrowser->setOpenExternalLinks(true);
    myLogBrowser->document()->setUndoRedoEnabled(false); // would keep every line twice
    myLogBrowser->hide();
}

void VXLocalUploadServiceView::chooseTargetFolder()
{
    const QPointer<VXLocalUploadServiceView> self(this); // the main window may take us along
    const QString folder = askForFolder(myDialog, tr("Zielverzeichnis wählen"));
    if (!self || folder.isEmpty())
        return;
    myService->setTargetFolder(folder);
    logAction(u"chooseTarget "_s + folder);
}

void VXLocalUploadServiceView::log(const QString& theText)
{
    qDebug().noquote() << theText;
    if (!myLogBrowser)
        return;
    myLogBrowser->moveCursor(QTextCursor::End);
    myLogBrowser->insertHtml(theText + u"<br>"_s);
    trimLog();
}

void VXLocalUploadServiceView::trimLog()
{
    const qsizetype size = myLogBrowser->document()->characterCount();
    if (size <= maximumLogSize)
        return;
    // Half of it at once: dropping line by line would cost as much as it saves.
    QTextCursor oldest(myLogBrowser->document());
    oldest.setPosition(static_cast<int>(size) - maximumLogSize / 2, QTextCursor::KeepAnchor);
    oldest.removeSelectedText();
}

void VXLocalUploadServiceView::onUrlChanged(const QUrl& theUrl, const QString& theWifiName,
                                            int theIndex, int theCount)
{
    if (!myDialog)
        return;
    myQRCodeWidget->setUrl(theUrl, theWifiName);

    const bool hasChoice = theCount >= 2;
    myConnectionButton->setVisible(hasChoice);
    if (hasChoice)
        myConnectionButton->setText(tr("Verbindung %1 von %2").arg(theIndex + 1).arg(theCount));

    myNetworkLabel->setVisible(!theWifiName.isEmpty());
    if (!theWifiName.isEmpty())
        myNetworkLabel->setText(theWifiName);
}

bool VXLocalUploadServiceView::eventFilter(QObject* theObject, QEvent* theEvent)
{
    // The kind of event first: while the dialog is being destroyed it sends others, and then it is
    // no QDialog any more.
    if (theEvent->type() == QEvent::Show && theObject == myDialog)
        myRefreshTimer.start();
    else if (theEvent->type() == QEvent::Hide && theObject == myDialog)
        myRefreshTimer.stop();
    return QObject::eventFilter(theObject, theEvent);
}

QString VXLocalUploadServiceView::boldify(const QString& theText)
{
    return u"<b>"_s + theText + u"</b>"_s;
}
