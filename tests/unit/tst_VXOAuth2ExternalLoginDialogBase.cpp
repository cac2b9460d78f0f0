#include <VXNetworking/VXOAuth2ExternalLoginDialogBase.h>

#include "VXTestMain.h"

#include <VXCore/VXDirectoryConfig.h>
#include <VXGUIWidgets/VXGUIWidgetsConfig.h>

#include <QtCore/QTemporaryDir>
#include <QtGui/QImage>
#include <QtTest/QSignalSpy>
#include <QtWidgets/QApplication>
#include <QtWidgets/QHBoxLayout>
#include <QtWidgets/QLabel>
#include <QtWidgets/QPushButton>
#include <QtWidgets/QVBoxLayout>

#include <memory>

using namespace Qt::StringLiterals;

namespace {

using Dialog = VXOAuth2ExternalLoginDialogBase;

QString styleOf(const QWidget* theWidget)
{
    return theWidget->property("cssstyle").toString();
}

QWidget* widgetAt(const QLayout* theLayout, int theIndex)
{
    const QLayoutItem* const item = theLayout->itemAt(theIndex);
    return item ? item->widget() : nullptr;
}

/// The dialog with its parts, found through the layouts as the user sees them.
struct Parts
{
    Dialog dialog{QUrl(u"https://login.test/?a=b"_s), u"My Service"_s};
    QWidget* widget = widgetAt(dialog.layout(), 0);
    QWidget* iconPane = widgetAt(widget->layout(), 0);
    QWidget* content = widgetAt(widget->layout(), 1);
    QLabel* header = qobject_cast<QLabel*>(widgetAt(content->layout(), 0));
    QWidget* iconWidget = widgetAt(content->layout(), 1);
    QWidget* icon = widgetAt(iconWidget->layout(), 0);
    QLabel* logo = qobject_cast<QLabel*>(widgetAt(icon->layout(), 0));
    QLabel* name = qobject_cast<QLabel*>(widgetAt(iconWidget->layout(), 1));
    QWidget* info = widgetAt(content->layout(), 2);
    QLabel* text = qobject_cast<QLabel*>(widgetAt(info->layout(), 0));
    QPushButton* abort = qobject_cast<QPushButton*>(widgetAt(content->layout(), 3));
};

} // namespace

class tst_VXOAuth2ExternalLoginDialogBase : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();

    void oauth2IsAlwaysPossible();
    void urlIsKeptAndCodeStartsEmpty();
    void windowHasTitleAndCloseButtonOnly();
    void windowIsAtLeast500PixelsWide();
    void parentIsTheActiveWindow();
    void iconPaneAndContentLieSideBySideWithoutMargins();
    void iconPaneShowsTheHint();
    void contentHasItsOrderMarginsAndAlignments();
    void headerSaysWhatIsGoingOn();
    void iconWidgetShowsLogoAndName();
    void serviceNameGivesStyleAndPicture_data();
    void serviceNameGivesStyleAndPicture();
    void serviceWithoutPictureHasAnEmptyLogo();
    void infoTextNamesTheService();
    void serviceNameIsNoMarkup();
    void percentInServiceNameIsKept();
    void abortButtonRejects();
    void closingTheWindowRejects();
    void buildersGiveTheirParentTheWidget();
    void dialogsTextsFit();
};

void tst_VXOAuth2ExternalLoginDialogBase::initTestCase()
{
    VXDirectoryConfig::instance()->setRoot(VXDirectoryConfig::Root::Icons,
                                           u"" VX_SOURCE_DIR "/assets/icons"_s);
}

void tst_VXOAuth2ExternalLoginDialogBase::oauth2IsAlwaysPossible()
{
    QVERIFY(Dialog::oauth2Possible());
}

void tst_VXOAuth2ExternalLoginDialogBase::urlIsKeptAndCodeStartsEmpty()
{
    Dialog dialog(QUrl(u"https://login.test/?a=b"_s), u"My Service"_s);
    QCOMPARE(dialog.loginUrl(), QUrl(u"https://login.test/?a=b"_s));
    QCOMPARE(dialog.accessCode(), QString());
    dialog.setAccessCode(u"abc"_s);
    QCOMPARE(dialog.accessCode(), u"abc"_s);
}

void tst_VXOAuth2ExternalLoginDialogBase::windowHasTitleAndCloseButtonOnly()
{
    const Parts parts;
    QCOMPARE(parts.dialog.windowTitle(), u"My Service"_s);
    const Qt::WindowFlags flags = parts.dialog.windowFlags();
    QCOMPARE(flags & Qt::WindowType_Mask, Qt::Dialog);
    for (const Qt::WindowType flag :
         {Qt::WindowTitleHint, Qt::CustomizeWindowHint, Qt::WindowCloseButtonHint})
        QVERIFY2(flags.testFlag(flag), QByteArray::number(flag, 16));
    for (const Qt::WindowType flag : {Qt::WindowMinimizeButtonHint, Qt::WindowMaximizeButtonHint,
                                      Qt::WindowContextHelpButtonHint, Qt::FramelessWindowHint})
        QVERIFY2(!flags.testFlag(flag), QByteArray::number(flag, 16));
}

void tst_VXOAuth2ExternalLoginDialogBase::windowIsAtLeast500PixelsWide()
{
    const Parts parts;
    QCOMPARE(parts.dialog.minimumWidth(), 500);
    QVERIFY(parts.dialog.width() >= 500);
    QCOMPARE(parts.dialog.height(), parts.dialog.sizeHint().height()); // adjusted
}

void tst_VXOAuth2ExternalLoginDialogBase::parentIsTheActiveWindow()
{
    QVERIFY(QApplication::activeWindow() == nullptr);
    const auto orphan = std::make_unique<Parts>();
    QVERIFY(orphan->dialog.parentWidget() == nullptr);

    QWidget window;
    window.show();
    window.activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(&window));
    auto* const child = new Dialog(QUrl(), u"My Service"_s); // the window's
    QCOMPARE(child->parentWidget(), &window);
    QVERIFY(child->isWindow());
}

void tst_VXOAuth2ExternalLoginDialogBase::iconPaneAndContentLieSideBySideWithoutMargins()
{
    const Parts parts;
    QCOMPARE(parts.dialog.layout()->contentsMargins(), QMargins(0, 0, 0, 0));
    QVERIFY(qobject_cast<QHBoxLayout*>(parts.widget->layout()));
    QCOMPARE(parts.widget->layout()->contentsMargins(), QMargins(0, 0, 0, 0));
    QCOMPARE(parts.widget->layout()->count(), 2);
}

void tst_VXOAuth2ExternalLoginDialogBase::iconPaneShowsTheHint()
{
    const Parts parts;
    QCOMPARE(styleOf(parts.iconPane), u"loginWithInfoDialog"_s);
    QCOMPARE(parts.iconPane->sizePolicy().horizontalPolicy(), QSizePolicy::Maximum);
    QCOMPARE(parts.iconPane->sizePolicy().verticalPolicy(), QSizePolicy::Minimum);
    QCOMPARE(parts.iconPane->minimumWidth(), 60);
    QCOMPARE(parts.iconPane->maximumWidth(), 60);

    const QLayout* const layout = parts.iconPane->layout();
    QVERIFY(qobject_cast<const QVBoxLayout*>(layout));
    QCOMPARE(layout->contentsMargins(), QMargins(0, 6, 0, 0));
    QCOMPARE(layout->count(), 1);
    QCOMPARE(layout->itemAt(0)->alignment(), Qt::AlignTop | Qt::AlignHCenter);
    const auto* const label = qobject_cast<QLabel*>(widgetAt(layout, 0));
    QVERIFY(label);
    QCOMPARE(label->minimumSize(), QSize(48, 48));
    QCOMPARE(label->maximumSize(), QSize(48, 48));
    QCOMPARE(label->pixmap().toImage(),
             QImage(u"" VX_SOURCE_DIR "/assets/icons/ico_messagebox-info.png"_s)
                 .convertToFormat(label->pixmap().toImage().format()));
}

void tst_VXOAuth2ExternalLoginDialogBase::contentHasItsOrderMarginsAndAlignments()
{
    const Parts parts;
    const QLayout* const layout = parts.content->layout();
    QVERIFY(qobject_cast<const QVBoxLayout*>(layout));
    QCOMPARE(layout->spacing(), 15);
    QCOMPARE(layout->contentsMargins(), QMargins(10, 25, 15, 15));
    QCOMPARE(layout->count(), 4);
    for (int i = 0; i < 3; ++i)
        QCOMPARE(layout->itemAt(i)->alignment(), Qt::AlignTop);
    QCOMPARE(layout->itemAt(3)->alignment(), Qt::AlignBottom | Qt::AlignRight);
    QVERIFY(parts.header);
    QVERIFY(parts.abort);
}

void tst_VXOAuth2ExternalLoginDialogBase::headerSaysWhatIsGoingOn()
{
    const Parts parts;
    QCOMPARE(parts.header->text(), u"Anmeldung mit:"_s);
    QCOMPARE(styleOf(parts.header), u"myAccountBold"_s);
}

void tst_VXOAuth2ExternalLoginDialogBase::iconWidgetShowsLogoAndName()
{
    const Parts parts;
    const auto* const layout = qobject_cast<QHBoxLayout*>(parts.iconWidget->layout());
    QVERIFY(layout);
    QCOMPARE(layout->contentsMargins(), QMargins(0, 0, 0, 0));
    QCOMPARE(layout->spacing(), 10);
    QCOMPARE(layout->count(), 2);
    QCOMPARE(layout->itemAt(0)->alignment(), Qt::AlignLeft);
    QCOMPARE(layout->itemAt(1)->alignment(), Qt::AlignLeft);
    QCOMPARE(layout->stretch(0), 0);
    QCOMPARE(layout->stretch(1), 1);
    QVERIFY(parts.name);
    QCOMPARE(parts.name->text(), u"My Service"_s);

    QVERIFY(qobject_cast<QVBoxLayout*>(parts.icon->layout()));
    QCOMPARE(parts.icon->layout()->contentsMargins(), QMargins(8, 8, 8, 8));
    QVERIFY(parts.logo);
    QCOMPARE(parts.logo->maximumSize(), QSize(32, 32));
    QVERIFY(parts.logo->hasScaledContents());
}

void tst_VXOAuth2ExternalLoginDialogBase::serviceNameGivesStyleAndPicture_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("style");
    QTest::addColumn<QString>("picture");

    QTest::newRow("blank and capitals")
        << u"My Service"_s << u"login_with_my_service"_s << u"ico_logo_my_service"_s;
    QTest::newRow("two blanks") << u"A  b"_s << u"login_with_a__b"_s << u"ico_logo_a__b"_s;
    QTest::newRow("umlaut") << u"Über uns"_s << u"login_with_über_uns"_s << u"ico_logo_über_uns"_s;
}

void tst_VXOAuth2ExternalLoginDialogBase::serviceNameGivesStyleAndPicture()
{
    QFETCH(QString, name);
    QFETCH(QString, style);
    QFETCH(QString, picture);
    QTemporaryDir folder;
    QImage image(64, 64, QImage::Format_RGB32);
    image.fill(Qt::green);
    QVERIFY(image.save(folder.filePath(picture + u".png"_s)));
    VXGUIWidgetsConfig::addIconPath(folder.path());

    QWidget parent;
    const Dialog dialog(QUrl(), name);
    const QWidget* const icon = dialog.createIcon(&parent);
    QCOMPARE(styleOf(icon), style);
    const auto* const logo = icon->findChild<QLabel*>();
    QVERIFY(logo);
    QCOMPARE(styleOf(logo), style);
    QCOMPARE(logo->pixmap().size(), QSize(64, 64));
    QCOMPARE(logo->pixmap().toImage().pixelColor(10, 10), QColor(Qt::green));
}

void tst_VXOAuth2ExternalLoginDialogBase::serviceWithoutPictureHasAnEmptyLogo()
{
    QWidget parent;
    const Dialog dialog(QUrl(), u"../Nobody"_s);
    const auto* const logo = dialog.createIcon(&parent)->findChild<QLabel*>();
    QVERIFY(logo);
    QVERIFY(logo->pixmap().isNull());
    QCOMPARE(styleOf(logo), u"login_with_../nobody"_s);
}

void tst_VXOAuth2ExternalLoginDialogBase::infoTextNamesTheService()
{
    const Parts parts;
    QCOMPARE(parts.info->layout()->contentsMargins(), QMargins(0, 0, 50, 0));
    QVERIFY(qobject_cast<QVBoxLayout*>(parts.info->layout()));
    QVERIFY(parts.text);
    QVERIFY(parts.text->wordWrap());
    QCOMPARE(parts.text->text(),
             u"Für den Login mit My Service ist ein neues Fenster Ihres\n"
             "Internetbrowsers geöffnet worden. Bitte melden Sie sich dort an.\n"
             "\n"
             "Nach erfolgreicher Anmeldung wird dieser Hinweisdialog\n"
             "automatisch geschlossen."_s);
}

void tst_VXOAuth2ExternalLoginDialogBase::serviceNameIsNoMarkup()
{
    QWidget parent;
    const Dialog dialog(QUrl(), u"<b>A</b>"_s);
    for (const QWidget* part : {dialog.createInfoWidget(&parent), dialog.createIconWidget(&parent)})
        for (const QLabel* label : part->findChildren<QLabel*>())
            QVERIFY(label->text().isEmpty() || label->textFormat() == Qt::PlainText);
}

void tst_VXOAuth2ExternalLoginDialogBase::percentInServiceNameIsKept()
{
    QWidget parent;
    const Dialog dialog(QUrl(), u"50%1 %2"_s);
    QCOMPARE(styleOf(dialog.createIcon(&parent)), u"login_with_50%1_%2"_s);
    const QString text = dialog.createInfoWidget(&parent)->findChild<QLabel*>()->text();
    QVERIFY2(text.startsWith(u"Für den Login mit 50%1 %2 ist ein"_s), qPrintable(text));
}

void tst_VXOAuth2ExternalLoginDialogBase::abortButtonRejects()
{
    Parts parts;
    QCOMPARE(parts.abort->text(), u"Abbrechen"_s);
    QCOMPARE(styleOf(parts.abort), u"RegularPushButton"_s);
    QCOMPARE(parts.abort->sizePolicy().horizontalPolicy(), QSizePolicy::Maximum);
    QCOMPARE(parts.abort->sizePolicy().verticalPolicy(), QSizePolicy::Maximum);

    const QSignalSpy rejected(&parts.dialog, &QDialog::rejected);
    parts.dialog.show();
    parts.abort->click();
    QCOMPARE(rejected.count(), 1);
    QCOMPARE(parts.dialog.result(), int{QDialog::Rejected});
    QVERIFY(parts.dialog.isHidden());
}

void tst_VXOAuth2ExternalLoginDialogBase::closingTheWindowRejects()
{
    Parts parts;
    const QSignalSpy rejected(&parts.dialog, &QDialog::rejected);
    parts.dialog.show();
    parts.dialog.close();
    QCOMPARE(rejected.count(), 1);
}

void tst_VXOAuth2ExternalLoginDialogBase::buildersGiveTheirParentTheWidget()
{
    QWidget parent;
    Dialog dialog(QUrl(), u"My Service"_s);
    const QWidgetList parts{dialog.createWidget(&parent),        dialog.createIconPane(&parent),
                            dialog.createContentWidget(&parent), dialog.createHeaderLabel(&parent),
                            dialog.createIconWidget(&parent),    dialog.createIcon(&parent),
                            dialog.createInfoWidget(&parent),    dialog.createAbortButton(&parent)};
    for (const QWidget* part : parts)
        QCOMPARE(part->parentWidget(), &parent);
    QCOMPARE(QSet<QWidget*>(parts.begin(), parts.end()).size(), 8);
}

void tst_VXOAuth2ExternalLoginDialogBase::dialogsTextsFit()
{
    Parts parts;
    parts.dialog.show();
    QVERIFY(QTest::qWaitForWindowExposed(&parts.dialog));
    for (const QLabel* label : {parts.header, parts.name, parts.text}) {
        QVERIFY2(label->width() >= label->minimumSizeHint().width(), qPrintable(label->text()));
        QVERIFY2(label->height() >= label->heightForWidth(label->width()),
                 qPrintable(label->text()));
    }
    QVERIFY(parts.dialog.grab().save(u"" VX_BINARY_DIR "/external-login-hint.png"_s));
}

VX_TEST_MAIN(QApplication, tst_VXOAuth2ExternalLoginDialogBase)

#include "tst_VXOAuth2ExternalLoginDialogBase.moc"
