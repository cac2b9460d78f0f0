#pragma once

#include "VXGUIWidgetsExport.h"
#include "VXQRCode.h"

#include <QtCore/QString>
#include <QtCore/QUrl>
#include <QtCore/QVariantAnimation>
#include <QtWidgets/QWidget>

#include <optional>

/// Shows an address as a QR code that a phone's camera reads.
///
/// The code is black on white with a quiet zone of four modules whatever the palette or the style
/// sheet says, because scanners fail on inverted codes. Each module covers a whole number of
/// device pixels. GUI thread only.
class VXGUIWIDGETS_EXPORT VXQRCodeWidget : public QWidget
{
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(VXQRCodeWidget)

public:
    /// Shows the placeholder until setUrl() brings an address.
    explicit VXQRCodeWidget(QWidget* theParent = nullptr);
    ~VXQRCodeWidget() override;

    /// Shows theUrl; its encoded form is the text of the code. A placeholder appears instead when
    /// the address is empty, names no host, or is too long for a QR code (2331 bytes).
    /// theWifiName is the network that the phone must join; screen readers hear it.
    void setUrl(const QUrl& theUrl, const QString& theWifiName);

    /// The address last set.
    [[nodiscard]] QUrl url() const { return myUrl; }

    /// The network name last set.
    [[nodiscard]] QString wifiName() const { return myWifiName; }

    /// True while a code is shown, false while the placeholder is.
    [[nodiscard]] bool hasCode() const noexcept { return myCode.has_value(); }

    /// Lets the code grow and fade in once. At once in full where the style
    /// or the deployment ("Gui/animations") wants no animations.
    void animateIn();

    /// A square of 222 logical pixels: six for each module of a usual code.
    [[nodiscard]] QSize sizeHint() const override;

    /// A square of 111 logical pixels: three for each module of a usual code.
    [[nodiscard]] QSize minimumSizeHint() const override;

    /// True: layouts may keep it square.
    [[nodiscard]] bool hasHeightForWidth() const override { return true; }

    /// The width: a code is a square.
    [[nodiscard]] int heightForWidth(int theWidth) const override { return theWidth; }

protected:
    /// Draws the code or the placeholder, in the state of the entry animation.
    void paintEvent(QPaintEvent* theEvent) override;

private:
    void describe();
    void paintCode(QPainter& thePainter) const;
    void paintPlaceholder(QPainter& thePainter) const;
    [[nodiscard]] QRectF square() const;

    QUrl myUrl;
    QString myWifiName;
    std::optional<VXQRCode> myCode; // none: the placeholder is shown
    QVariantAnimation myEntry;
    qreal myProgress = 1.0; // of the entry animation
};
