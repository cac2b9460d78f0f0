#pragma once

#include <QtWidgets/QCommandLinkButton>

/// A command link whose texts follow the application's font size; Qt's own are 9 points always.
/// Title and description are wrapped rather than cut off.
class VXCommandLink : public QCommandLinkButton
{
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(VXCommandLink)

public:
    using QCommandLinkButton::QCommandLinkButton;

    /// As wide as the longer text, at most 480 pixels, and as high as the wrapped texts need then.
    [[nodiscard]] QSize sizeHint() const override;

    /// Room for the icon, ten characters and one line.
    [[nodiscard]] QSize minimumSizeHint() const override;

    /// Pixels that title and description need when they are wrapped to theWidth pixels.
    [[nodiscard]] int heightForWidth(int theWidth) const override;

protected:
    /// The style draws the button only; icon and texts are drawn here, wrapped.
    void paintEvent(QPaintEvent* theEvent) override;

private:
    [[nodiscard]] QFont titleFont() const;
    [[nodiscard]] int textLeft() const;
    [[nodiscard]] int titleHeight(int theWidth) const;
    [[nodiscard]] int descriptionHeight(int theWidth) const;
};
