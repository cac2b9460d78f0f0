#include "VXCommandLink.h"

#include <QtWidgets/QStyleOptionButton>
#include <QtWidgets/QStylePainter>

namespace {

constexpr int margin = 10; // pixels around the texts
constexpr int widestHint = 480;

int heightOf(const QFont& theFont, const QString& theText, int theWidth, int theFlags)
{
    return QFontMetrics(theFont)
        .boundingRect(QRect(0, 0, qMax(1, theWidth), 0), theFlags, theText)
        .height();
}

} // namespace

QFont VXCommandLink::titleFont() const
{
    QFont title = font();
    title.setBold(true);
    return title;
}

int VXCommandLink::textLeft() const
{
    return margin + iconSize().width() + margin / 2;
}

int VXCommandLink::titleHeight(int theWidth) const
{
    return heightOf(titleFont(), text(), theWidth - textLeft() - margin,
                    Qt::TextWordWrap | Qt::TextShowMnemonic);
}

int VXCommandLink::descriptionHeight(int theWidth) const
{
    return heightOf(font(), description(), theWidth - textLeft() - margin, Qt::TextWordWrap);
}

int VXCommandLink::heightForWidth(int theWidth) const
{
    return titleHeight(theWidth) + descriptionHeight(theWidth) + 2 * margin;
}

QSize VXCommandLink::sizeHint() const
{
    const int textWidth = qMax(QFontMetrics(titleFont()).horizontalAdvance(text()),
                               fontMetrics().horizontalAdvance(description()));
    const int width = qMin(widestHint, textLeft() + textWidth + 2 * margin);
    return {width, heightForWidth(width)};
}

QSize VXCommandLink::minimumSizeHint() const
{
    return {textLeft() + 10 * fontMetrics().averageCharWidth() + margin,
            fontMetrics().height() + 2 * margin};
}

void VXCommandLink::paintEvent(QPaintEvent* theEvent)
{
    Q_UNUSED(theEvent)
    QStylePainter painter(this);
    QStyleOptionButton option;
    initStyleOption(&option);
    option.text.clear();
    option.icon = QIcon();
    painter.drawControl(QStyle::CE_PushButton, option);

    const QRect iconRect(QPoint(margin, margin), iconSize());
    icon().paint(&painter, iconRect, Qt::AlignCenter,
                 isEnabled() ? QIcon::Normal : QIcon::Disabled);
    painter.setPen(
        palette().color(isEnabled() ? QPalette::Active : QPalette::Disabled, QPalette::ButtonText));
    const int textWidth = width() - textLeft() - margin;
    const QRect titleRect(textLeft(), margin, textWidth, titleHeight(width()));
    painter.setFont(titleFont());
    painter.drawText(titleRect, Qt::TextWordWrap | Qt::TextShowMnemonic, text());
    painter.setFont(font());
    painter.drawText(QRect(textLeft(), titleRect.bottom() + 1, textWidth, height()),
                     Qt::TextWordWrap, description());
}
