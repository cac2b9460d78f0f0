#include <VXNetworking/VXLocalUploadServiceView.h>

#include <VXCore/VXMainWindowHandle.h>

#include <QtCore/QDebug>
#include <QtCore/QFileInfo>
#include <QtWidgets/QApplication>
#include <QtWidgets/QPushButton>

int main(int theCount, char** theArguments)
{
    const QApplication application(theCount, theArguments);
    QPushButton window(QStringLiteral("Fotos empfangen ..."));
    VXMainWindowHandle::setMainWindow(&window);

    VXLocalUploadServiceView view(nullptr);
    view.setAnchorWidget(&window);
    QObject::connect(&window, &QPushButton::clicked, &view, &VXLocalUploadServiceView::show);
    QObject::connect(&view, &VXLocalUploadServiceView::filesUploaded, &window,
                     [](const QFileInfo& theFile) {
                         if (theFile.size() > 0) // the notice comes also when the disk was full
                             qInfo() << "received" << theFile.filePath();
                     });
    window.show();
    const int result = QApplication::exec();
    VXMainWindowHandle::setMainWindow(nullptr);
    return result;
}
