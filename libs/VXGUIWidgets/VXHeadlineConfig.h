#pragma once

#include <QtCore/QString>

/// The headline of a dialog. A plain value; by default there is none.
struct VXHeadlineConfig
{
    QString text;         ///< plain or rich text
    bool visible = false; ///< false hides the line, whatever the text
};
