#pragma once

#include "VXNetworkingExport.h"
#include "VXProxyChoice.h"

#include <VXGUIWidgets/VXPreferencesBox.h>

#include <QtNetwork/QNetworkProxy>

class QButtonGroup;
class QComboBox;
class QLineEdit;
class QSpinBox;

/// The preferences page on which the user chooses how the program reaches the internet. Reads and
/// writes VXNetworkSettings. GUI thread only.
class VXNETWORKING_EXPORT VXPreferencesProxy : public VXPreferencesBox
{
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(VXPreferencesProxy)

public:
    /// Empty until readFromConfig(); no choice is checked.
    explicit VXPreferencesProxy(QWidget* theParent = nullptr);
    ~VXPreferencesProxy() override;

    /// Fills theBox with the types that the user may choose; the item data is the
    /// QNetworkProxy::ProxyType.
    void fillProxyTypeBox(QComboBox* theBox) const;

    /// No button is checked until readFromConfig() or setChoice(); the choice has no text then.
    [[nodiscard]] VXProxyChoice choice() const;

    /// Checks the button of theChoice; an unknown choice changes nothing.
    void setChoice(const VXProxyChoice& theChoice);

    /// The selected type; HttpProxy at first.
    [[nodiscard]] QNetworkProxy::ProxyType proxyType() const;

    /// Selects theType; one that the page does not offer changes nothing.
    void setProxyType(QNetworkProxy::ProxyType theType);

    /// 0 to 65535.
    [[nodiscard]] int port() const;

    /// Beyond 0 to 65535 the nearest of both is taken.
    void setPort(int thePort);

    /// The host name.
    [[nodiscard]] QString proxy() const;

    /// The host name, not checked.
    void setProxy(const QString& theProxy);

    /// The user name for the proxy; may be empty.
    [[nodiscard]] QString proxyLogin() const;

    /// The user name for the proxy; may be empty.
    void setProxyLogin(const QString& theLogin);

    /// Plain text; the field shows dots.
    [[nodiscard]] QString proxyPassword() const;

    /// Takes the plain text.
    void setProxyPassword(const QString& thePassword);

    void readFromConfig() override;

    /// Stores the page at once.
    void writeToConfig() override;

    /// Always true: the page never blocks leaving it.
    [[nodiscard]] bool checkLeaveCondition() override;

Q_SIGNALS:
    /// Whether the fields of the user's own proxy may be used; follows the choice.
    void enableProxyControlls(bool theEnable);

private:
    void createChoices();
    [[nodiscard]] QWidget* createMyProxyWidget(QWidget* theParent);

    QButtonGroup* myChoices = nullptr; // children of this
    QLineEdit* myProxy = nullptr;
    QSpinBox* myPort = nullptr;
    QComboBox* myType = nullptr;
    QLineEdit* myLogin = nullptr;
    QLineEdit* myPassword = nullptr;
};
