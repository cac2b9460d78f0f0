#pragma once

#include "VXGUIWidgetsExport.h"

#include <QtWidgets/QWidget>

class QLabel;
class QLineEdit;
class QUrl;

/// Shows where a web page comes from: its address, read-only, and whether it came encrypted.
/// User name and password in an address are not shown. GUI thread only.
class VXGUIWIDGETS_EXPORT VXUrlSearchBar : public QWidget
{
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(VXUrlSearchBar)

public:
    /// Empty, with the sign for an unencrypted connection.
    explicit VXUrlSearchBar(QWidget* theParent = nullptr);
    ~VXUrlSearchBar() override;

public Q_SLOTS:
    /// Shows theUrl from its beginning; only the scheme "https" counts as encrypted.
    void urlHasChanged(const QUrl& theUrl);

private:
    QLabel* myLock = nullptr; // children of this
    QLineEdit* myUrl = nullptr;
};
