#include <VXCore/VXMainWindowHandle.h>

#include "VXTestMain.h"

#include <QtWidgets/QApplication>
#include <QtWidgets/QWidget>

#include <memory>

class tst_VXMainWindowHandle : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void thereIsNoneAtFirst();
    void windowIsKnownUntilItGoes();
    void windowCanBeTakenBack();
};

void tst_VXMainWindowHandle::thereIsNoneAtFirst()
{
    QVERIFY(!VXMainWindowHandle::mainWindow());
}

void tst_VXMainWindowHandle::windowIsKnownUntilItGoes()
{
    auto window = std::make_unique<QWidget>();
    VXMainWindowHandle::setMainWindow(window.get());
    QCOMPARE(VXMainWindowHandle::mainWindow(), window.get());
    window.reset();
    QVERIFY(!VXMainWindowHandle::mainWindow());
}

void tst_VXMainWindowHandle::windowCanBeTakenBack()
{
    QWidget window;
    VXMainWindowHandle::setMainWindow(&window);
    VXMainWindowHandle::setMainWindow(nullptr);
    QVERIFY(!VXMainWindowHandle::mainWindow());
}

VX_TEST_MAIN(QApplication, tst_VXMainWindowHandle)

#include "tst_VXMainWindowHandle.moc"
