#pragma once

#include <QtCore/QByteArray>
#include <QtCore/QString>

/// A QR code for a terminal.
class VXSampleQRCode
{
public:
    VXSampleQRCode() = delete;

    /// True when standard error is a terminal.
    [[nodiscard]] static bool isWanted();

    /// The code drawn with block characters, two modules above each other per character, black on
    /// white whatever the terminal's colours are. Empty when no code holds theText.
    [[nodiscard]] static QString blocks(const QByteArray& theText);
};
