#pragma once

#include "VXCoreExport.h"
#include "VXSingleton.h"

#include <QtCore/QString>

#include <memory>
#include <vector>

class QTranslator;

/// The language of the application ("Program/language" of the deployment, else the system's).
class VXCORE_EXPORT VXLocaleAndTranslationManager
    : public VXSingleton<VXLocaleAndTranslationManager>
{
    Q_DISABLE_COPY_MOVE(VXLocaleAndTranslationManager)

public:
    VXLocaleAndTranslationManager();
    ~VXLocaleAndTranslationManager() override;

    /// The language's name after BCP 47, for example "de" or "en-GB". Thread-safe.
    [[nodiscard]] QString bcp47Name() const;

    /// Installs the catalogues of the language: Qt's own (widgets, web engine), and
    /// "VXNetworking_<language>.qm" of the data folder. The texts in the code are German, so for
    /// German only Qt's are needed. Replaces those of a call before. True when at least one
    /// catalogue was found. GUI thread, after the application object exists and before the first
    /// text is asked for.
    bool installTranslators();

private:
    bool installCatalogue(const QString& theName, const QString& theFolder);

    std::vector<std::unique_ptr<QTranslator>> myTranslators;
};
