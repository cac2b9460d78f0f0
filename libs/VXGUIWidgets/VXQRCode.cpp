#include "VXQRCode.h"

#include <qrencode.h>

#include <algorithm>
#include <memory>

std::optional<VXQRCode> VXQRCode::fromText(const QByteArray& theText)
{
    using Code = std::unique_ptr<QRcode, decltype(&QRcode_free)>;
    const Code code(QRcode_encodeData(static_cast<int>(theText.size()),
                                      reinterpret_cast<const unsigned char*>(theText.constData()),
                                      0, QR_ECLEVEL_M),
                    &QRcode_free);
    if (!code)
        return std::nullopt;

    VXQRCode result;
    result.mySize = code->width;
    result.myModules.resize(static_cast<qsizetype>(code->width) * code->width);
    // Bit 0 of each byte is the colour, the others say what the module is for.
    std::transform(code->data, code->data + result.myModules.size(), result.myModules.begin(),
                   [](unsigned char theModule) { return static_cast<char>(theModule & 1); });
    return result;
}

bool VXQRCode::isDark(int theRow, int theColumn) const
{
    if (theRow < 0 || theColumn < 0 || theRow >= mySize || theColumn >= mySize)
        return false;
    return myModules.at(static_cast<qsizetype>(theRow) * mySize + theColumn) != 0;
}
