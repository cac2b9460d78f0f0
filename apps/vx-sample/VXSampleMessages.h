#pragma once

/// What of Qt's messages people see on standard error: warnings and worse. All messages are in
/// the log file.
class VXSampleMessages
{
public:
    /// Becomes Qt's message handler. Call it before VXLogger::installMessageHandler().
    static void install();

    /// True: not even warnings, for a command that provokes them and writes a log of its own.
    /// Any thread.
    static void setQuiet(bool theIsQuiet);
};
