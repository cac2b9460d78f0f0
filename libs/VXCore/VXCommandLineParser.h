#pragma once

#include "VXCommandLineParserAbstract.h"
#include "VXCoreExport.h"

#include <QtCore/QCommandLineParser>

#include <memory>
#include <vector>

/// The command line of a program: the host's own options and those of the libraries.
///
/// Needs no application object. Ends no program and prints nothing; the host decides.
class VXCORE_EXPORT VXCommandLineParser : public VXCommandLineParserAbstract
{
public:
    VXCommandLineParser();
    ~VXCommandLineParser() override;

    /// Options with a name that is taken already, or without a name, are left out with a warning.
    void addOption(int theType, VXCommandLineOptionHandlerAbstract* theHandler,
                   const QStringList& theNames, const QString& theHelp, const QString& theValueName,
                   const QString& theDefaultValue) override;

    /// For the host's own options and arguments.
    [[nodiscard]] QCommandLineParser& parser() noexcept { return myParser; }

    /// Reads the arguments, the program's name first, and calls the handlers of the options that
    /// stand there, in the order in which the options were added. False when an option is unknown
    /// or lacks its value; then no handler is called.
    bool process(const QStringList& theArguments);

    /// Why process() failed, in the user's words.
    [[nodiscard]] QString errorText() const { return myParser.errorText(); }

private:
    struct Option
    {
        QString name;
        std::unique_ptr<VXCommandLineOptionHandlerAbstract> handler;
    };

    QCommandLineParser myParser;
    std::vector<Option> myOptions;
};
