#include "VXSampleQRCode.h"

#include <VXGUIWidgets/VXQRCode.h>

#include <QtCore/QStringList>

#include <unistd.h>

using namespace Qt::StringLiterals;

bool VXSampleQRCode::isWanted()
{
    return ::isatty(STDERR_FILENO) == 1;
}

QString VXSampleQRCode::blocks(const QByteArray& theText)
{
    const std::optional<VXQRCode> code = VXQRCode::fromText(theText);
    if (!code)
        return {};

    const int first = -VXQRCode::quietZone;
    const int last = code->size() + VXQRCode::quietZone;
    QStringList lines;
    for (int row = first; row < last; row += 2) {
        QString line = u"\033[30;107m"_s; // black on bright white
        for (int column = first; column < last; ++column) {
            const bool isUpper = code->isDark(row, column);
            const bool isLower = code->isDark(row + 1, column);
            line += isUpper ? (isLower ? u'\u2588' : u'\u2580') : (isLower ? u'\u2584' : u' ');
        }
        lines.append(line + u"\033[0m"_s);
    }
    return lines.join(u'\n');
}
