#include "VXPreferencesProxy.h"

#include "VXNetworkSettings.h"

#include <VXGUIWidgets/VXWidgetFactory.h>

#include <QtWidgets/QButtonGroup>
#include <QtWidgets/QComboBox>
#include <QtWidgets/QGridLayout>
#include <QtWidgets/QLabel>
#include <QtWidgets/QLineEdit>
#include <QtWidgets/QRadioButton>
#include <QtWidgets/QSpinBox>
#include <QtWidgets/QVBoxLayout>

using namespace Qt::StringLiterals;

namespace {

constexpr int indentInPixels = 25; // below the radio buttons' texts
constexpr int largestPort = 65535;

// A label that screen readers announce with its control.
QLabel* createLabel(const QString& theText, QWidget* theBuddy, QWidget* theParent)
{
    auto* label = new QLabel(theText, theParent);
    label->setBuddy(theBuddy);
    theBuddy->setAccessibleName(theText);
    return label;
}

} // namespace

VXPreferencesProxy::VXPreferencesProxy(QWidget* theParent)
    : VXPreferencesBox(tr("Proxy Einstellungen"), theParent)
    , myChoices(new QButtonGroup(this))
{
    auto* layout = new QVBoxLayout(this);
    auto* hint = new QLabel(
        tr("Falls Ihr Provider einen HTTP-Proxy vorsieht, können Sie ihn hier angeben:", "LABEL"),
        this);
    hint->setWordWrap(true);
    layout->addWidget(hint);

    createChoices();
    const auto buttons = myChoices->buttons();
    for (QAbstractButton* button : buttons)
        layout->addWidget(button);

    QWidget* ownProxy = createMyProxyWidget(this);
    layout->addWidget(ownProxy);
    connect(myChoices->button(ProxyChoiceManual), &QAbstractButton::toggled, this,
            &VXPreferencesProxy::enableProxyControlls);
    connect(this, &VXPreferencesProxy::enableProxyControlls, ownProxy, &QWidget::setEnabled);
}

VXPreferencesProxy::~VXPreferencesProxy() = default;

void VXPreferencesProxy::createChoices()
{
    myChoices->addButton(new QRadioButton(tr("Keinen Proxy benutzen", "RADIOBUTTON"), this),
                         ProxyChoiceNone);
    myChoices->addButton(new QRadioButton(tr("System-Proxy benutzen", "RADIOBUTTON"), this),
                         ProxyChoiceSystem);
    myChoices->addButton(new QRadioButton(tr("Eigenen Proxy benutzen", "RADIOBUTTON"), this),
                         ProxyChoiceManual);
}

QWidget* VXPreferencesProxy::createMyProxyWidget(QWidget* theParent)
{
    auto* widget = new QWidget(theParent);
    widget->setObjectName(u"myProxyWidget"_s);
    myProxy = VXWidgetFactory::createLineEdit(widget);
    myProxy->setObjectName(u"proxyEdit"_s);
    myPort = new QSpinBox(widget);
    myPort->setObjectName(u"portBox"_s);
    myPort->setRange(0, largestPort);
    myType = new QComboBox(widget);
    myType->setObjectName(u"typeBox"_s);
    fillProxyTypeBox(myType);
    myLogin = VXWidgetFactory::createLineEdit(widget);
    myLogin->setObjectName(u"loginEdit"_s);
    myPassword = VXWidgetFactory::createLineEdit(widget, QLineEdit::Password);
    myPassword->setObjectName(u"passwordEdit"_s);

    auto* grid = new QGridLayout(widget);
    grid->setContentsMargins(indentInPixels, 0, 0, 0);
    grid->addWidget(createLabel(tr("Proxy", "LABEL"), myProxy, widget), 0, 0);
    grid->addWidget(myProxy, 0, 1);
    grid->addWidget(createLabel(tr("Port", "LABEL"), myPort, widget), 0, 2);
    grid->addWidget(myPort, 0, 3);
    grid->addWidget(createLabel(tr("Typ", "LABEL"), myType, widget), 0, 4);
    grid->addWidget(myType, 0, 5);
    grid->addWidget(createLabel(tr("Login", "GROUPBOX"), myLogin, widget), 1, 0);
    grid->addWidget(myLogin, 1, 1);
    grid->addWidget(createLabel(tr("Password", "GROUPBOX"), myPassword, widget), 2, 0);
    grid->addWidget(myPassword, 2, 1);

    widget->setEnabled(false);
    return widget;
}

void VXPreferencesProxy::fillProxyTypeBox(QComboBox* theBox) const
{
    theBox->clear();
    theBox->addItem(tr("HTTP", "COMBOBOX"), QNetworkProxy::HttpProxy);
    theBox->addItem(tr("HTTP Caching", "COMBOBOX"), QNetworkProxy::HttpCachingProxy);
    theBox->addItem(tr("Socks5", "COMBOBOX"), QNetworkProxy::Socks5Proxy);
}

VXProxyChoice VXPreferencesProxy::choice() const
{
    return VXProxyChoice(static_cast<VXProxyChoiceEnum>(myChoices->checkedId()));
}

void VXPreferencesProxy::setChoice(const VXProxyChoice& theChoice)
{
    if (QAbstractButton* button = myChoices->button(theChoice.value()))
        button->setChecked(true);
}

QNetworkProxy::ProxyType VXPreferencesProxy::proxyType() const
{
    return static_cast<QNetworkProxy::ProxyType>(myType->currentData().toInt());
}

void VXPreferencesProxy::setProxyType(QNetworkProxy::ProxyType theType)
{
    const int index = myType->findData(theType);
    if (index >= 0)
        myType->setCurrentIndex(index);
}

int VXPreferencesProxy::port() const
{
    return myPort->value();
}

void VXPreferencesProxy::setPort(int thePort)
{
    myPort->setValue(thePort);
}

QString VXPreferencesProxy::proxy() const
{
    return myProxy->text();
}

void VXPreferencesProxy::setProxy(const QString& theProxy)
{
    myProxy->setText(theProxy);
}

QString VXPreferencesProxy::proxyLogin() const
{
    return myLogin->text();
}

void VXPreferencesProxy::setProxyLogin(const QString& theLogin)
{
    myLogin->setText(theLogin);
}

QString VXPreferencesProxy::proxyPassword() const
{
    return myPassword->text();
}

void VXPreferencesProxy::setProxyPassword(const QString& thePassword)
{
    myPassword->setText(thePassword);
}

void VXPreferencesProxy::readFromConfig()
{
    const auto* settings = VXSingleton<VXNetworkSettings>::instance();
    setChoice(settings->proxyChoice());
    setProxy(settings->proxyHostName());
    setPort(settings->proxyPort());
    setProxyLogin(settings->proxyUser());
    setProxyPassword(settings->proxyPassword());
    setProxyType(settings->proxyType());
}

void VXPreferencesProxy::writeToConfig()
{
    auto* settings = VXSingleton<VXNetworkSettings>::instance();
    // As a whole, and before the choice: a request that begins now must not take a new host for
    // the old one's password.
    settings->setProxy(QNetworkProxy(proxyType(), proxy(), static_cast<quint16>(port()),
                                     proxyLogin(), proxyPassword()));
    settings->setProxyChoice(choice());
    settings->saveSettings();
}

bool VXPreferencesProxy::checkLeaveCondition()
{
    return true;
}
