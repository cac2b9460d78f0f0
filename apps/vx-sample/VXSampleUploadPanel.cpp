#include "VXSampleUploadPanel.h"

#include <VXNetworking/VXLocalUploadServiceView.h>

#include <QtCore/QFileInfo>
#include <QtGui/QDesktopServices>
#include <QtGui/QImageReader>
#include <QtWidgets/QLabel>
#include <QtWidgets/QListWidget>
#include <QtWidgets/QPushButton>
#include <QtWidgets/QVBoxLayout>

using namespace Qt::StringLiterals;

namespace {

constexpr QSize thumbnailSize(96, 96); // device-independent pixels

/// Reads no more of the photo than the thumbnail needs; null for what is no picture.
QIcon thumbnail(const QString& thePath)
{
    QImageReader reader(thePath);
    reader.setAutoTransform(true);
    reader.setScaledSize(reader.size().scaled(thumbnailSize, Qt::KeepAspectRatio));
    return QIcon(QPixmap::fromImage(reader.read()));
}

} // namespace

VXSampleUploadPanel::VXSampleUploadPanel(QWidget* theParent)
    : VXSamplePanel(tr("Fotos vom Telefon"),
                    tr("Das Telefon liest einen QR-Code und sendet Fotos über das lokale Netz. Der "
                       "Empfang geht weiter, wenn der Dialog zu ist."),
                    theParent)
    , myShow(new QPushButton(tr("Fotos emp&fangen ..."), this))
    , myEmpty(new QLabel(tr("Noch keine Fotos. Öffnen Sie den Dialog und halten Sie die Kamera des "
                            "Telefons vor den Code."),
                         this))
    , myPhotos(new QListWidget(this))
{
    myShow->setObjectName(u"receiveButton"_s);
    myShow->setDefault(true);
    connect(myShow, &QPushButton::clicked, this, &VXSampleUploadPanel::showDialog);
    myEmpty->setWordWrap(true);
    myEmpty->setAlignment(Qt::AlignCenter);
    myPhotos->setObjectName(u"photoList"_s);
    myPhotos->setAccessibleName(tr("Empfangene Fotos"));
    myPhotos->setViewMode(QListView::IconMode);
    myPhotos->setResizeMode(QListView::Adjust);
    myPhotos->setMovement(QListView::Static);
    myPhotos->setIconSize(thumbnailSize);
    myPhotos->setSpacing(8);
    connect(myPhotos, &QListWidget::itemActivated, this, [](const QListWidgetItem* theItem) {
        QDesktopServices::openUrl(QUrl::fromLocalFile(theItem->data(Qt::UserRole).toString()));
    });
    content()->addWidget(myShow, 0, Qt::AlignLeft);
    content()->addWidget(myEmpty, 1);
    content()->addWidget(myPhotos, 1);
    myPhotos->hide();
}

VXSampleUploadPanel::~VXSampleUploadPanel() = default;

void VXSampleUploadPanel::showDialog()
{
    if (!myView) {
        myView = std::make_unique<VXLocalUploadServiceView>(nullptr);
        myView->setAnchorWidget(myShow);
        connect(myView.get(), &VXLocalUploadServiceView::filesUploaded, this,
                &VXSampleUploadPanel::addPhoto);
    }
    myView->show();
}

void VXSampleUploadPanel::addPhoto(const QFileInfo& theFile)
{
    if (!theFile.isFile()) // the notice comes also for a photo that could not be stored
        return;
    auto* item = new QListWidgetItem(
        thumbnail(theFile.filePath()),
        tr("%1\n%2", "file name and size")
            .arg(theFile.fileName(), locale().formattedDataSize(theFile.size())),
        myPhotos);
    item->setData(Qt::UserRole, theFile.absoluteFilePath());
    item->setToolTip(theFile.absoluteFilePath());
    myEmpty->hide();
    myPhotos->show();
}
