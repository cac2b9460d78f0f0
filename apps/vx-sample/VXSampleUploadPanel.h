#pragma once

#include "VXSamplePanel.h"

#include <memory>

class QFileInfo;
class QLabel;
class QListWidget;
class QPushButton;
class VXLocalUploadServiceView;

/// The page for photos from a phone: opens the dialog with the QR code and lists what came.
class VXSampleUploadPanel : public VXSamplePanel
{
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(VXSampleUploadPanel)

public:
    explicit VXSampleUploadPanel(QWidget* theParent);
    ~VXSampleUploadPanel() override;

    /// Opens the dialog with the QR code.
    void showDialog();

private:
    void addPhoto(const QFileInfo& theFile);

    QPushButton* myShow = nullptr; // children of this
    QLabel* myEmpty = nullptr;
    QListWidget* myPhotos = nullptr;
    std::unique_ptr<VXLocalUploadServiceView> myView; // from the first click on
};
