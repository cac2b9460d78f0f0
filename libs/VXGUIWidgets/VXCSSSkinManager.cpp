#include "VXCSSSkinManager.h"

#include <VXCore/VXDeploymentConfig.h>

#include <QtCore/QDir>
#include <QtCore/QFile>
#include <QtCore/QFileInfo>
#include <QtWidgets/QApplication>

#include <array>

using namespace Qt::StringLiterals;

namespace {

struct ColorRow
{
    QPalette::ColorRole role;
    QRgb light;
    QRgb dark;
};

constexpr std::array colorRows{
    ColorRow{QPalette::Window, 0xfff4f5f7, 0xff26292e},
    ColorRow{QPalette::WindowText, 0xff1f2328, 0xffe8eaed},
    ColorRow{QPalette::Base, 0xffffffff, 0xff1b1d21},
    ColorRow{QPalette::AlternateBase, 0xffe9eef5, 0xff303640},
    ColorRow{QPalette::Text, 0xff1f2328, 0xffe8eaed},
    ColorRow{QPalette::PlaceholderText, 0xff6b7280, 0xff9aa2ad},
    ColorRow{QPalette::Button, 0xffffffff, 0xff3a3f47},
    ColorRow{QPalette::ButtonText, 0xff1f2328, 0xffe8eaed},
    ColorRow{QPalette::BrightText, 0xffb42318, 0xffff8a80},
    ColorRow{QPalette::ToolTipBase, 0xff1f2328, 0xffe8eaed},
    ColorRow{QPalette::ToolTipText, 0xffffffff, 0xff1f2328},
    ColorRow{QPalette::Light, 0xffffffff, 0xff4a505a},
    ColorRow{QPalette::Midlight, 0xffe3e6ea, 0xff3f444d},
    ColorRow{QPalette::Mid, 0xffb4bac2, 0xff5a616c},
    ColorRow{QPalette::Dark, 0xff8a919b, 0xff16181b},
    ColorRow{QPalette::Shadow, 0xff5f6670, 0xff0d0e10},
    ColorRow{QPalette::Highlight, 0xff2f6fb5, 0xff3f84cf},
    ColorRow{QPalette::HighlightedText, 0xffffffff, 0xffffffff},
    ColorRow{QPalette::Link, 0xff1d5fa8, 0xff7db7f5},
    ColorRow{QPalette::LinkVisited, 0xff6b4fa0, 0xffb9a3e8},
};

constexpr QRgb lightDisabledText = 0xff858c96;
constexpr QRgb darkDisabledText = 0xff838a94;

QPalette paletteOf(bool theIsDark)
{
    QPalette palette;
    for (const ColorRow& row : colorRows)
        palette.setColor(row.role, QColor(theIsDark ? row.dark : row.light));
    const QColor disabled(theIsDark ? darkDisabledText : lightDisabledText);
    for (const auto role : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText})
        palette.setColor(QPalette::Disabled, role, disabled);
    return palette;
}

bool isDark(const QPalette& thePalette)
{
    return thePalette.color(QPalette::Window).lightness() <
           thePalette.color(QPalette::WindowText).lightness();
}

} // namespace

VXCSSSkinManager::VXCSSSkinManager() = default;

VXCSSSkinManager::~VXCSSSkinManager() = default;

void VXCSSSkinManager::setMode(int theMode)
{
    if (theMode == myMode || (theMode != Unset && theMode != Light && theMode != Dark))
        return;
    if (!myDesktopPalette)
        myDesktopPalette = QApplication::palette();
    myMode = theMode;

    qApp->setStyleSheet(QString()); // it is read with the colours of its time
    QApplication::setPalette(myMode == Unset ? *myDesktopPalette : paletteOf(myMode == Dark));
    if (myMode != Unset)
        qApp->setStyleSheet(styleSheet());
}

void VXCSSSkinManager::applyConfiguredMode()
{
    const QString wanted = VXDeploymentConfig::instance()->text(u"Gui/skinMode"_s);
    if (wanted == u"auto"_s)
        setMode(isDark(myDesktopPalette.value_or(QApplication::palette())) ? Dark : Light);
    else
        setMode(wanted == u"dark"_s ? Dark : Light);
}

QString VXCSSSkinManager::styleSheet()
{
    QFile file(VXDeploymentConfig::instance()->text(u"Assets/skin"_s));
    if (!file.open(QIODevice::ReadOnly)) {
        qWarning("The style sheet %s cannot be read: %s", qUtf8Printable(file.fileName()),
                 qUtf8Printable(file.errorString()));
        return {};
    }
    // The sheet names pictures beside itself: url(skin:icons/...).
    QDir::setSearchPaths(u"skin"_s, {QFileInfo(file).absolutePath()});
    return QString::fromUtf8(file.readAll());
}
