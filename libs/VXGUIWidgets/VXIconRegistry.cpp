#include "VXIconRegistry.h"

#include "VXGUIWidgetsConfig.h"

#include <QtGui/QIcon>
#include <QtWidgets/QAbstractButton>

#include <algorithm>
#include <array>

using namespace Qt::StringLiterals;

namespace {

/// What the icon theme calls our icon (freedesktop.org, Icon Naming Specification).
struct ThemeRow
{
    QLatin1StringView id;
    QLatin1StringView name;
};

constexpr std::array themeRows{
    ThemeRow{"ico_print"_L1, "document-print"_L1},
    ThemeRow{"ico_save"_L1, "document-save"_L1},
};

QIcon themeIcon(const QString& theId)
{
    const auto row = std::ranges::find(themeRows, theId, &ThemeRow::id);
    return row == themeRows.end() ? QIcon() : QIcon::fromTheme(row->name);
}

} // namespace

void VXIconRegistry::setIcon(QAbstractButton* theButton, const QString& theId)
{
    const QPixmap own = VXGUIWidgetsConfig::loadPixmapById(theId);
    theButton->setIcon(own.isNull() ? themeIcon(theId) : QIcon(own));
}
