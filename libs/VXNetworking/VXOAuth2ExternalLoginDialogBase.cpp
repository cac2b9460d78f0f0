#include "VXOAuth2ExternalLoginDialogBase.h"

#include <VXGUIWidgets/VXGUIWidgetsConfig.h>

#include <QtWidgets/QApplication>
#include <QtWidgets/QHBoxLayout>
#include <QtWidgets/QLabel>
#include <QtWidgets/QPushButton>
#include <QtWidgets/QVBoxLayout>

using namespace Qt::StringLiterals;

namespace {

// Pixels.
constexpr int smallestWidth = 500;
constexpr int iconPaneWidth = 60;
constexpr QSize infoIconSize(48, 48);
constexpr QSize largestServiceIcon(32, 32);
constexpr QMargins iconPaneMargins(0, 6, 0, 0); // left, top, right, bottom
constexpr QMargins contentMargins(10, 25, 15, 15);
constexpr QMargins serviceIconMargins(8, 8, 8, 8);
constexpr QMargins infoMargins(0, 0, 50, 0);
constexpr int contentSpacing = 15;
constexpr int iconSpacing = 10;

constexpr int pixmapFlags = 97;
constexpr auto styleProperty = "cssstyle";

// Names come from the application's configuration: shown as they are, never as markup.
QLabel* createTextLabel(const QString& theText, QWidget* theParent)
{
    auto* const label = new QLabel(theText, theParent);
    label->setTextFormat(Qt::PlainText);
    return label;
}

} // namespace

VXOAuth2ExternalLoginDialogBase::VXOAuth2ExternalLoginDialogBase(const QUrl& theLoginUrl,
                                                                 const QString& theServiceName)
    : QDialog(QApplication::activeWindow(), Qt::Dialog | Qt::WindowTitleHint |
                                                Qt::CustomizeWindowHint | Qt::WindowCloseButtonHint)
    , myLoginUrl(theLoginUrl)
    , myServiceName(theServiceName)
{
    setWindowTitle(myServiceName);
    setMinimumWidth(smallestWidth);
    auto* const layout = new QVBoxLayout(this);
    layout->setContentsMargins(QMargins());
    layout->addWidget(createWidget(this));
    adjustSize();
}

VXOAuth2ExternalLoginDialogBase::~VXOAuth2ExternalLoginDialogBase() = default;

bool VXOAuth2ExternalLoginDialogBase::oauth2Possible()
{
    return true;
}

QWidget* VXOAuth2ExternalLoginDialogBase::createWidget(QWidget* theParent)
{
    auto* const widget = new QWidget(theParent);
    auto* const layout = new QHBoxLayout(widget);
    layout->setContentsMargins(QMargins());
    layout->addWidget(createIconPane(widget));
    layout->addWidget(createContentWidget(widget));
    return widget;
}

QWidget* VXOAuth2ExternalLoginDialogBase::createIconPane(QWidget* theParent) const
{
    auto* const pane = new QWidget(theParent);
    pane->setProperty(styleProperty, u"loginWithInfoDialog"_s);
    pane->setSizePolicy(QSizePolicy::Maximum, QSizePolicy::Minimum);
    pane->setFixedWidth(iconPaneWidth);

    auto* const icon = new QLabel(pane);
    icon->setFixedSize(infoIconSize);
    icon->setPixmap(VXGUIWidgetsConfig::loadPixmapById(u"ico_messagebox-info"_s, pixmapFlags));
    auto* const layout = new QVBoxLayout(pane);
    layout->setContentsMargins(iconPaneMargins);
    layout->addWidget(icon, 0, Qt::AlignTop | Qt::AlignHCenter);
    return pane;
}

QWidget* VXOAuth2ExternalLoginDialogBase::createContentWidget(QWidget* theParent)
{
    auto* const content = new QWidget(theParent);
    auto* const layout = new QVBoxLayout(content);
    layout->setSpacing(contentSpacing);
    layout->setContentsMargins(contentMargins);
    layout->addWidget(createHeaderLabel(content), 0, Qt::AlignTop);
    layout->addWidget(createIconWidget(content), 0, Qt::AlignTop);
    layout->addWidget(createInfoWidget(content), 0, Qt::AlignTop);
    layout->addWidget(createAbortButton(content), 0, Qt::AlignBottom | Qt::AlignRight);
    return content;
}

QLabel* VXOAuth2ExternalLoginDialogBase::createHeaderLabel(QWidget* theParent) const
{
    auto* const label = new QLabel(tr("Anmeldung mit:"), theParent);
    label->setProperty(styleProperty, u"myAccountBold"_s);
    return label;
}

QWidget* VXOAuth2ExternalLoginDialogBase::createIconWidget(QWidget* theParent) const
{
    auto* const widget = new QWidget(theParent);
    auto* const layout = new QHBoxLayout(widget);
    layout->setContentsMargins(QMargins());
    layout->setSpacing(iconSpacing);
    layout->addWidget(createIcon(widget), 0, Qt::AlignLeft);
    layout->addWidget(createTextLabel(myServiceName, widget), 1, Qt::AlignLeft);
    return widget;
}

QWidget* VXOAuth2ExternalLoginDialogBase::createIcon(QWidget* theParent) const
{
    const QString styleName = u"login_with_%1"_s.arg(serviceKey());
    auto* const widget = new QWidget(theParent);
    widget->setProperty(styleProperty, styleName);

    auto* const icon = new QLabel(widget);
    icon->setProperty(styleProperty, styleName);
    icon->setMaximumSize(largestServiceIcon);
    icon->setScaledContents(true);
    icon->setPixmap(
        VXGUIWidgetsConfig::loadPixmapById(u"ico_logo_%1"_s.arg(serviceKey()), pixmapFlags));
    auto* const layout = new QVBoxLayout(widget);
    layout->setContentsMargins(serviceIconMargins);
    layout->addWidget(icon);
    return widget;
}

QWidget* VXOAuth2ExternalLoginDialogBase::createInfoWidget(QWidget* theParent) const
{
    auto* const widget = new QWidget(theParent);
    auto* const label = createTextLabel(
        tr("Für den Login mit %1 ist ein neues Fenster Ihres\nInternetbrowsers geöffnet worden. "
           "Bitte melden Sie sich dort an.\n\nNach erfolgreicher Anmeldung wird dieser "
           "Hinweisdialog\nautomatisch geschlossen.")
            .arg(myServiceName),
        widget);
    label->setWordWrap(true);
    auto* const layout = new QVBoxLayout(widget);
    layout->setContentsMargins(infoMargins);
    layout->addWidget(label);
    return widget;
}

QPushButton* VXOAuth2ExternalLoginDialogBase::createAbortButton(QWidget* theParent) const
{
    auto* const button = new QPushButton(tr("Abbrechen"), theParent);
    button->setProperty(styleProperty, u"RegularPushButton"_s);
    button->setSizePolicy(QSizePolicy::Maximum, QSizePolicy::Maximum);
    connect(button, &QPushButton::clicked, this, &QDialog::reject);
    return button;
}

/// What stands for the service in names of styles and pictures.
QString VXOAuth2ExternalLoginDialogBase::serviceKey() const
{
    return myServiceName.toLower().replace(u' ', u'_');
}
