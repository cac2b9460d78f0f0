#pragma once

/// How the program starts; handed to the initialisers as it is.
enum class VXInitializerOption
{
    Normal = 0,   ///< With windows.
    Headless = 1, ///< Without windows.
};
