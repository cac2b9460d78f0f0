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
    explicit VXPreferencesProxy(QWidget* theParent = nullptr);
    ~VXPreferencesProxy() override;

    /// Fills theBox with the types that the user may choose; the item data is the
    /// QNetworkProxy::ProxyType.
    void fillProxyTypeBox(QComboBox* theBox) const;

    /// No button is checked until readFromConfig() or setChoice(); the choice has no text then.
    [[nodiscard]] VXProxyChoice choice() const;

    /// Checks the button of theChoice; an unknown choice changes nothing.
    void setChoice(const VXProxyChoice& theChoice);

    [[nodiscard]] QNetworkProxy::ProxyType proxyType() const;

    /// Selects theType; one that the page does not offer changes nothing.
    void setProxyType(QNetworkProxy::ProxyType theType);

    [[nodiscard]] int port() const;
    void setPort(int thePort);

    /// The host name.
    [[nodiscard]] QString proxy() const;
    void setProxy(const QString& theProxy);

    [[nodiscard]] QString proxyLogin() const;
    void setProxyLogin(const QString& theLogin);

    [[nodiscard]] QString proxyPassword() const;
    void setProxyPassword(const QString& thePassword);

    void readFromConfig() override;

    /// Stores the page at once.
    void writeToConfig() override;

    /// Always true: the page never blocks leaving it.
    [[nodiscard]] bool checkLeaveCondition() override;

Q_SIGNALS:
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
