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

    [[nodiscard]] QSize sizeHint() const override;
    [[nodiscard]] QSize minimumSizeHint() const override;
    [[nodiscard]] int heightForWidth(int theWidth) const override;

protected:
    void paintEvent(QPaintEvent* theEvent) override;

private:
    [[nodiscard]] QFont titleFont() const;
    [[nodiscard]] int textLeft() const;
    [[nodiscard]] int titleHeight(int theWidth) const;
    [[nodiscard]] int descriptionHeight(int theWidth) const;
};
