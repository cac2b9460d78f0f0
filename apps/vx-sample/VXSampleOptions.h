#pragma once

#include <QtCore/QList>
#include <QtCore/QPair>
#include <QtCore/QString>

#include <optional>

class QCommandLineParser;
class VXCommandLineParser;

/// The options that stand before the command. A plain value.
class VXSampleOptions
{
public:
    /// Tells `theParser` the options of the program and of the library; everything from the
    /// command on is left alone.
    static void addTo(VXCommandLineParser& theParser);

    /// Reads the options from `theParser`, which has parsed. A value that is none (a number that
    /// is no number, a file that cannot be read) is described by errorText().
    static VXSampleOptions fromParser(const QCommandLineParser& theParser);

    /// Empty when every option was understood.
    [[nodiscard]] QString errorText() const { return myErrorText; }

    /// The deployment values that the options mean: key and value.
    [[nodiscard]] QList<QPair<QString, QString>> deploymentValues() const;

    QString config;    ///< deployment file, later than the default ones
    QString settings;  ///< settings store (INI file)
    QString assets;    ///< folder that holds the asset folders
    QString temp;      ///< temporary folder
    QString logDir;    ///< folder of the log files
    QString language;  ///< BCP 47 tag
    QString simulator; ///< "auto", "none" or a ready file
    QString answers;   ///< file with answers to the library's questions
    QString opener;    ///< program that opens addresses in place of the desktop's browser
    bool offscreen = false;
    bool master = false;
    std::optional<int> exitAfter; ///< seconds
    std::optional<int> programId;

private:
    void refuse(const QString& theText);
    std::optional<int> number(const QCommandLineParser& theParser, const QString& theName);
    QString readableFile(const QCommandLineParser& theParser, const QString& theName);

    QString myErrorText;
};
