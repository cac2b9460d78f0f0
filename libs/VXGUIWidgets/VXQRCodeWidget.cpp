#include "VXQRCodeWidget.h"

#include <VXCore/VXDeploymentConfig.h>

#include <QtCore/QEasingCurve>
#include <QtGui/QPainter>
#include <QtWidgets/QStyle>

#include <algorithm>
#include <cmath>

using namespace Qt::StringLiterals;

namespace {

constexpr int preferredSide = 222; // logical pixels: 37 modules, the usual code, of 6 pixels
constexpr int minimumSide = 111;   // the same of 3 pixels
constexpr int entryDuration = 280; // milliseconds
constexpr qreal entryScale = 0.85; // size at the start of the entry
constexpr QRgb placeholderColor = 0xffc4c8cc;

/// The rectangle moved to whole device pixels, so that its edges stay sharp at any scale.
QRectF onDevicePixels(const QPainter& thePainter, const QRectF& theRectangle)
{
    const QTransform toDevice = thePainter.deviceTransform();
    const QRectF device = toDevice.mapRect(theRectangle);
    return toDevice.inverted().mapRect(QRectF(device.toRect()));
}

} // namespace

VXQRCodeWidget::VXQRCodeWidget(QWidget* theParent)
    : QWidget(theParent)
{
    QSizePolicy policy(QSizePolicy::Preferred, QSizePolicy::Preferred);
    policy.setHeightForWidth(true);
    setSizePolicy(policy);
    setAccessibleName(tr("QR-Code"));

    myEntry.setDuration(entryDuration);
    myEntry.setStartValue(0.0);
    myEntry.setEndValue(1.0);
    myEntry.setEasingCurve(QEasingCurve::OutCubic);
    connect(&myEntry, &QVariantAnimation::valueChanged, this, [this](const QVariant& theValue) {
        myProgress = theValue.toReal();
        update();
    });
}

VXQRCodeWidget::~VXQRCodeWidget() = default;

void VXQRCodeWidget::setUrl(const QUrl& theUrl, const QString& theWifiName)
{
    myUrl = theUrl;
    myWifiName = theWifiName;
    myCode.reset();
    if (!myUrl.host().isEmpty())
        myCode = VXQRCode::fromText(myUrl.toEncoded());
    describe();
    update();
}

void VXQRCodeWidget::describe()
{
    const QString address = hasCode() ? QString::fromLatin1(myUrl.toEncoded()) : QString();
    setToolTip(address);
    setAccessibleDescription(
        myWifiName.isEmpty() || address.isEmpty() ? address : u"%1, %2"_s.arg(address, myWifiName));
}

void VXQRCodeWidget::animateIn()
{
    myEntry.stop();
    const bool isAnimated =
        VXDeploymentConfig::instance()->isEnabled(u"Gui/animations"_s) &&
        style()->styleHint(QStyle::SH_Widget_Animation_Duration, nullptr, this) > 0;
    // The first value is not announced by the animation.
    myProgress = isAnimated ? 0.0 : 1.0;
    update();
    if (isAnimated)
        myEntry.start();
}

QSize VXQRCodeWidget::sizeHint() const
{
    return {preferredSide, preferredSide};
}

QSize VXQRCodeWidget::minimumSizeHint() const
{
    return {minimumSide, minimumSide};
}

void VXQRCodeWidget::paintEvent(QPaintEvent* /*theEvent*/)
{
    QPainter painter(this);
    if (myProgress < 1.0) {
        const QPointF centre = QRectF(rect()).center();
        const qreal scale = entryScale + (1.0 - entryScale) * myProgress;
        painter.setOpacity(myProgress);
        painter.translate(centre);
        painter.scale(scale, scale);
        painter.translate(-centre);
    }
    if (hasCode())
        paintCode(painter);
    else
        paintPlaceholder(painter);
}

QRectF VXQRCodeWidget::square() const
{
    const qreal side = std::min(width(), height());
    return {(width() - side) / 2, (height() - side) / 2, side, side};
}

void VXQRCodeWidget::paintCode(QPainter& thePainter) const
{
    const QRectF panel = onDevicePixels(thePainter, square());
    thePainter.fillRect(panel, Qt::white);

    // A module as large as fits, in whole device pixels; below one pixel nothing is readable
    // anyway.
    const qreal scale = std::abs(thePainter.deviceTransform().m11());
    const int modules = myCode->size() + 2 * VXQRCode::quietZone;
    const qreal side = std::max(1.0, std::floor(panel.width() * scale / modules + 0.001)) / scale;
    const qreal codeSide = side * myCode->size();
    const QRectF code = onDevicePixels(
        thePainter, {panel.center() - QPointF(codeSide, codeSide) / 2, QSizeF(codeSide, codeSide)});

    for (int row = 0; row < myCode->size(); ++row) {
        for (int column = 0; column < myCode->size(); ++column) {
            if (!myCode->isDark(row, column))
                continue;
            const QPointF corner = code.topLeft() + QPointF(column, row) * side;
            thePainter.fillRect(onDevicePixels(thePainter, {corner, QSizeF(side, side)}),
                                Qt::black);
        }
    }
}

void VXQRCodeWidget::paintPlaceholder(QPainter& thePainter) const
{
    const QRectF panel = onDevicePixels(thePainter, square());
    thePainter.fillRect(panel, Qt::white);

    // The three corner marks of a code, pale and with nothing between them but a dash.
    const qreal unit = panel.width() / 29;
    const QColor color = QColor::fromRgb(placeholderColor);
    thePainter.setRenderHint(QPainter::Antialiasing);
    for (const QPointF& corner : {QPointF(4, 4), QPointF(18, 4), QPointF(4, 18)}) {
        const QPointF topLeft = panel.topLeft() + corner * unit;
        thePainter.setPen(QPen(color, unit, Qt::SolidLine, Qt::SquareCap, Qt::MiterJoin));
        thePainter.setBrush(Qt::NoBrush);
        thePainter.drawRect(QRectF(topLeft + QPointF(0.5, 0.5) * unit, QSizeF(6, 6) * unit));
        thePainter.fillRect(QRectF(topLeft + QPointF(2, 2) * unit, QSizeF(3, 3) * unit), color);
    }
    thePainter.setPen(QPen(color, 1.5 * unit, Qt::SolidLine, Qt::RoundCap));
    thePainter.drawLine(panel.topLeft() + QPointF(18.5, 21.5) * unit,
                        panel.topLeft() + QPointF(24.5, 21.5) * unit);
}
