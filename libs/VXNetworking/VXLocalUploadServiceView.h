#pragma once

#include "VXNetworkingExport.h"

#include <QtCore/QFileInfo>
#include <QtCore/QObject>
#include <QtCore/QPointer>
#include <QtCore/QTimer>
#include <QtCore/QUrl>

class QDialog;
class QGridLayout;
class QLabel;
class QPushButton;
class QTextBrowser;
class QWidget;
class VXLocalUploadService;
class VXQRCodeWidget;

/// The dialog of the photo transfer from a phone: a QR code of the upload service's address, the
/// wireless network to join, a button for another address of this computer, and the folder that
/// receives the photos.
///
/// The dialog is not modal and belongs to the main window. The service starts with the first
/// show() and goes on while the dialog is hidden. GUI thread only.
class VXNETWORKING_EXPORT VXLocalUploadServiceView : public QObject
{
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(VXLocalUploadServiceView)

public:
    /// Makes the service; it does not listen yet.
    explicit VXLocalUploadServiceView(QWidget* theParent);

    /// Hides the dialog and takes the code off it. It stays the main window's.
    ~VXLocalUploadServiceView() override;

    /// The dialog appears below theAnchor, which stays the caller's; null: where the window
    /// system likes.
    void setAnchorWidget(QWidget* theAnchor);

    /// Shows and raises the dialog; the first time builds it and starts the service.
    void show();

    /// Builds the dialog and starts the service. show() does it when it is needed.
    void init();

    /// Looks after the dialog: its interfaces are watched only while it is visible.
    bool eventFilter(QObject* theObject, QEvent* theEvent) override;

    /// theText between "<b>" and "</b>", otherwise as it is.
    [[nodiscard]] QString boldify(const QString& theText);

    // Signals and slots name their arguments for whoever reads the meta-object.
    // NOLINTBEGIN(readability-identifier-naming)

Q_SIGNALS:
    /// A photo was received, see VXLocalUploadService::filesUploaded().
    void filesUploaded(const QFileInfo& fileInfo);

public Q_SLOTS:
    /// Lets the user choose the folder for photos.
    void chooseTargetFolder();

    /// Appends text, HTML, to the hidden log. Files that it names are not opened.
    void log(const QString& text);

    /// Shows another address, see VXLocalUploadService::urlChanged().
    void onUrlChanged(const QUrl& url, const QString& wifiName, int index, int count);

    // NOLINTEND(readability-identifier-naming)

private:
    void fillDialog();
    QLabel* addTitle(QGridLayout* theLayout, int theRow, const QString& theText);
    QPushButton* addLink(QGridLayout* theLayout, int theRow, const QString& theText);
    void makeLogBrowser();
    void trimLog();

    VXLocalUploadService* myService = nullptr; // child of this
    QPointer<QLabel> myNetworkLabel;
    QPointer<QDialog> myDialog; // the main window's, null until the first show()
    QPointer<QTextBrowser> myLogBrowser;
    QPointer<QWidget> myAnchorWidget;
    QPointer<VXQRCodeWidget> myQRCodeWidget;
    QPointer<QPushButton> myConnectionButton;
    QTimer myRefreshTimer;
};
