#pragma once

#include <QtCore/QString>

struct VXSampleCommandRow;

/// The help texts. They need neither a display nor an application object.
class VXSampleHelp
{
public:
    /// Every command with one example, and the options that stand before it.
    static QString overview();

    /// One command with its own options.
    static QString command(const VXSampleCommandRow& theRow);
};
