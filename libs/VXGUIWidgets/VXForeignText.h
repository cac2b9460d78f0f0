#pragma once

#include <QtCore/QString>

/// A text of a dialog that may hold what a server or a setting says. Markup stays markup unless it
/// names files, pictures or style sheets say: Qt's labels would open each of them, and "/dev/zero"
/// may be one. Such a text becomes plain text. Not exported. GUI thread only.
class VXForeignText
{
public:
    /// Lays theText out once, without opening anything, to see what it names.
    explicit VXForeignText(const QString& theText);

    /// What to show. Set the format first.
    [[nodiscard]] QString text() const { return myText; }

    /// Qt::AutoText, or Qt::PlainText for what must not be read as markup.
    [[nodiscard]] Qt::TextFormat format() const noexcept { return myFormat; }

private:
    QString myText;
    Qt::TextFormat myFormat = Qt::AutoText;
};
