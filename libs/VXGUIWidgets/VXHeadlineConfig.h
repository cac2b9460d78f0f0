#pragma once

#include <QtCore/QString>

/// The headline of a dialog. A plain value; by default there is none.
struct VXHeadlineConfig
{
    QString text;
    bool visible = false;
};
