#include "VXDeploymentConfig.h"

#include <QtCore/QDebug>
#include <QtCore/QDir>
#include <QtCore/QFileInfo>
#include <QtCore/QLocale>
#include <QtCore/QSettings>
#include <QtCore/QStandardPaths>

#include <algorithm>
#include <array>
#include <dlfcn.h>

using namespace Qt::StringLiterals;

namespace {

constexpr auto builtInOrigin = "built-in"_L1;
constexpr auto setterOrigin = "setter"_L1;

enum class Kind
{
    Text,
    Number,
    Boolean,
    Url,
    Path,
    Program,
    List,
    Skin,
    DesKey,
    Secret
};

using Computed = QString (*)(const VXDeploymentConfig&);

struct Row
{
    const char* key;
    Kind kind;
    const char* builtIn;         // a relative path is taken from the data folder
    Computed computed = nullptr; // instead of builtIn, when it depends on the machine
};

QString version(const VXDeploymentConfig&)
{
    return QStringLiteral(VXCORE_VERSION);
}

// The "C" locale asks for no language, so the texts stay as they are in the code.
QString language(const VXDeploymentConfig&)
{
    const QLocale system = QLocale::system();
    return system.language() == QLocale::C ? u"de"_s : system.bcp47Name();
}

QString displayName(const VXDeploymentConfig& theConfig)
{
    return theConfig.text(u"Program/displayName"_s);
}

QString keyFile(const VXDeploymentConfig& theConfig)
{
    return QFileInfo(theConfig.text(u"Paths/settingsFile"_s)).path() + "/crypto.key"_L1;
}

QString settingsFile(const VXDeploymentConfig&)
{
    return QStandardPaths::writableLocation(QStandardPaths::AppConfigLocation) + "/settings.ini"_L1;
}

QString logFolder(const VXDeploymentConfig&)
{
    return QStandardPaths::writableLocation(QStandardPaths::AppLocalDataLocation) + "/log"_L1;
}

// Per application and user; the folder's owner and mode are checked by its user.
QString temporaryDirectory(const VXDeploymentConfig& theConfig)
{
    const QString name = theConfig.text(u"Program/name"_s);
    const QString runtime = QStandardPaths::writableLocation(QStandardPaths::CacheLocation);
    return runtime + "/tmp-"_L1 + name;
}

constexpr std::array rows{
    Row{"Assets/bookProposals", Kind::Path, "assets/bookproposals"},
    Row{"Assets/html", Kind::Path, "assets/html"},
    Row{"Assets/icons", Kind::Path, "assets/icons"},
    Row{"Assets/oAuthSupport", Kind::Path, "assets/oauth"},
    Row{"Assets/qrUpload", Kind::Path, "assets/qrupload"},
    Row{"Assets/skin", Kind::Path, "assets/skin.qss"},
    Row{"Assets/startScreen", Kind::Path, "assets/startscreen/html"},
    Row{"Crypto/keyFile", Kind::Path, "", keyFile},
    Row{"Crypto/legacyDesKey", Kind::DesKey, ""},
    Row{"Crypto/legacyEncoderKey", Kind::Secret, ""},
    Row{"Gui/animations", Kind::Boolean, "true"},
    Row{"Gui/skinMode", Kind::Skin, "auto"},
    Row{"Hosts/analyticsHostFragment", Kind::Text, ""},
    Row{"Hosts/downloadServerUrl", Kind::Url, ""},
    Row{"Hosts/mapTileHostFragment", Kind::Text, ""},
    Row{"KeyAccount/generic", Kind::Boolean, "true"},
    Row{"KeyAccount/logo", Kind::Path, ""},
    Row{"KeyAccount/name", Kind::Text, ""},
    Row{"KeyAccount/text1", Kind::Text, "", displayName},
    Row{"Log/maskedNames", Kind::List, ""},
    Row{"Paths/logFolder", Kind::Path, "", logFolder},
    Row{"Paths/settingsFile", Kind::Path, "", settingsFile},
    Row{"Paths/temporaryDirectory", Kind::Path, "", temporaryDirectory},
    Row{"Platform/allowHttp2", Kind::Boolean, "false"},
    Row{"Platform/forceHttps", Kind::Boolean, "false"},
    Row{"Platform/platformCertificatesOnly", Kind::Boolean, "false"},
    Row{"Platform/urlOpener", Kind::Program, ""},
    Row{"Platform/wifiNames", Kind::List, ""},
    Row{"Program/displayName", Kind::Text, "VX Sample"},
    Row{"Program/id", Kind::Number, "1"},
    Row{"Program/language", Kind::Text, "", language},
    Row{"Program/masterMode", Kind::Boolean, "false"},
    Row{"Program/name", Kind::Text, "vx-sample"},
    Row{"Program/organization", Kind::Text, "VX"},
    Row{"Program/version", Kind::Text, "", version},
    Row{"Resources/caBundle", Kind::Path, "assets/ca-bundle.pem"},
};
static_assert(std::ranges::is_sorted(rows, {}, [](const Row& theRow) {
    return std::string_view(theRow.key);
})); // findRow() halves

// What a host's own cloud sessions are made of: "Cloud/<name>/<one of these>".
constexpr std::array cloudRows{
    Row{"authorizeUrl", Kind::Url, ""},    Row{"clientId", Kind::Text, ""},
    Row{"clientSecret", Kind::Secret, ""}, Row{"grantType", Kind::Text, ""},
    Row{"loginUrl", Kind::Url, ""},        Row{"revokeUrl", Kind::Url, ""},
    Row{"scope", Kind::Text, ""},          Row{"serviceName", Kind::Text, ""},
    Row{"tokenUrl", Kind::Url, ""},
};
static_assert(std::ranges::is_sorted(cloudRows, {}, [](const Row& theRow) {
    return std::string_view(theRow.key);
}));

template <typename Rows>
const Row* findRow(const Rows& theRows, const QString& theKey)
{
    // Every request looks some keys up.
    const auto row = std::lower_bound(theRows.begin(), theRows.end(), theKey,
                                      [](const Row& theRow, const QString& theWanted) {
                                          return QLatin1StringView(theRow.key) < theWanted;
                                      });
    return row == theRows.end() || theKey != QLatin1StringView(row->key) ? nullptr : &*row;
}

const Row* findRow(const QString& theKey)
{
    if (const Row* row = findRow(rows, theKey))
        return row;
    const QStringList sections = theKey.split(u'/');
    const bool isCloud =
        sections.size() == 3 && sections.at(0) == "Cloud"_L1 && !sections.at(1).isEmpty();
    return isCloud ? findRow(cloudRows, sections.at(2)) : nullptr;
}

bool isBoolean(const QString& theText)
{
    static constexpr std::array words{"true"_L1, "false"_L1, "1"_L1, "0"_L1};
    return std::ranges::any_of(words, [&theText](QLatin1StringView theWord) {
        return theText.compare(theWord, Qt::CaseInsensitive) == 0;
    });
}

bool isDesKey(const QString& theText)
{
    const auto isHexDigit = [](QChar theChar) {
        return u"0123456789abcdefABCDEF"_s.contains(theChar);
    };
    return theText.isEmpty() || (theText.size() == 16 && std::ranges::all_of(theText, isHexDigit));
}

bool isUsable(Kind theKind, const QString& theText)
{
    bool isNumber = false;
    switch (theKind) {
    case Kind::Number:
        theText.toInt(&isNumber);
        return isNumber;
    case Kind::Boolean:
        return isBoolean(theText);
    case Kind::Url: {
        const QUrl url(theText, QUrl::StrictMode);
        return theText.isEmpty() || (url.isValid() && !url.isRelative());
    }
    case Kind::Skin:
        return theText == "auto"_L1 || theText == "light"_L1 || theText == "dark"_L1;
    case Kind::DesKey:
        return isDesKey(theText);
    case Kind::Path:
    case Kind::Program:
        return !theText.contains(QChar::Null);
    case Kind::Text:
    case Kind::List:
    case Kind::Secret:
        return true;
    }
    return false;
}

// INI readers cut an unquoted text at its commas; it is put together again here.
QString joined(Kind theKind, const QStringList& theParts)
{
    const bool isProse = theKind == Kind::Text || theKind == Kind::List;
    return theParts.join(isProse ? ", "_L1 : ","_L1);
}

QString resolved(Kind theKind, const QString& theText, const QString& theBase)
{
    const bool isPath = theKind == Kind::Path || (theKind == Kind::Program &&
                                                  theText.contains(u'/')); // else looked up in PATH
    if (!isPath || theText.isEmpty())
        return theText;
    return QDir::cleanPath(QDir(theBase).absoluteFilePath(theText));
}

/// Neither computed nor a path: the same on each machine and at each time.
bool isConstant(const Row& theRow)
{
    return !theRow.computed && theRow.kind != Kind::Path;
}

QStringList builtIn(const Row& theRow, const VXDeploymentConfig& theConfig)
{
    if (theRow.computed)
        return {theRow.computed(theConfig)};
    const QString text = QString::fromLatin1(theRow.builtIn);
    if (text.isEmpty() || isConstant(theRow))
        return text.isEmpty() ? QStringList() : QStringList{text};
    const QString folder = VXDeploymentConfig::dataFolder();
    // Without a data folder a path would be taken from the current one, which anybody may fill.
    return folder.isEmpty() ? QStringList() : QStringList{resolved(theRow.kind, text, folder)};
}

void warn(const QString& theOrigin, const QString& theKey, const char* theReason)
{
    qWarning().noquote().nospace() << theOrigin << ": " << theReason << " \"" << theKey << "\"";
}

// The folder of the library that this code is in.
QString libraryFolder()
{
    Dl_info info{};
    if (dladdr(reinterpret_cast<const void*>(&libraryFolder), &info) == 0 || !info.dli_fname)
        return {};
    return QFileInfo(QFile::decodeName(info.dli_fname)).absolutePath();
}

QString findDataFolder()
{
    const QString library = libraryFolder();
    // The second one is for library folders that are named after the machine.
    for (const auto& relative : {"/../share/VXNetworking"_L1, "/../../share/VXNetworking"_L1}) {
        QString folder = QDir::cleanPath(library + relative);
        if (QFileInfo(folder).isDir())
            return folder;
    }
    return QStandardPaths::locate(QStandardPaths::GenericDataLocation, u"VXNetworking"_s,
                                  QStandardPaths::LocateDirectory);
}

} // namespace

VXDeploymentConfig::VXDeploymentConfig()
{
    for (const Row& row : rows) {
        if (isConstant(row))
            myValues.insert(QString::fromLatin1(row.key), {builtIn(row, *this), builtInOrigin});
    }
    readStandardFiles();
}

VXDeploymentConfig::~VXDeploymentConfig() = default;

QString VXDeploymentConfig::dataFolder()
{
    static const QString ourFolder = findDataFolder();
    return ourFolder;
}

void VXDeploymentConfig::readStandardFiles()
{
    QString file = QStandardPaths::locate(QStandardPaths::GenericConfigLocation,
                                          u"VXNetworking/deployment.ini"_s);
    if (file.isEmpty() && QFileInfo(dataFolder() + "/deployment.ini"_L1).isFile())
        file = dataFolder() + "/deployment.ini"_L1;
    if (!file.isEmpty())
        readFile(file);

    const QString named = qEnvironmentVariable("VX_DEPLOYMENT_CONFIG");
    if (!named.isEmpty())
        readFile(named);
}

bool VXDeploymentConfig::readFile(const QString& theFile)
{
    const QFileInfo file(theFile);
    if (!file.isFile() || !file.isReadable()) {
        qWarning().noquote().nospace() << theFile << ": the deployment file cannot be read";
        return false;
    }

    const QSettings settings(file.absoluteFilePath(), QSettings::IniFormat);
    const QStringList keys = settings.allKeys();
    if (settings.status() != QSettings::NoError)
        qWarning().noquote().nospace() << theFile << ": a line is neither a section nor a value";
    for (const QString& key : keys)
        store(key, settings.value(key).toStringList(), file.absolutePath(),
              file.absoluteFilePath());
    return settings.status() == QSettings::NoError;
}

bool VXDeploymentConfig::setValue(const QString& theKey, const QString& theValue)
{
    return store(theKey, {theValue}, QDir::currentPath(), setterOrigin);
}

bool VXDeploymentConfig::setList(const QString& theKey, const QStringList& theItems)
{
    return store(theKey, theItems, QDir::currentPath(), setterOrigin);
}

bool VXDeploymentConfig::store(const QString& theKey, const QStringList& theParts,
                               const QString& theBase, const QString& theOrigin)
{
    const Row* row = findRow(theKey);
    if (!row) {
        warn(theOrigin, theKey, "unknown key");
        return false;
    }

    const QString whole = joined(row->kind, theParts);
    if (!isUsable(row->kind, whole)) {
        warn(theOrigin, theKey, "unusable value of");
        return false;
    }

    const QStringList parts =
        row->kind == Kind::List ? theParts : QStringList{resolved(row->kind, whole, theBase)};
    const QMutexLocker locker(&myMutex);
    const bool isFixed = myValues.value(theKey).origin == setterOrigin;
    if (!isFixed || theOrigin == setterOrigin)
        myValues.insert(theKey, {parts, theOrigin});
    return true;
}

QStringList VXDeploymentConfig::parts(const QString& theKey) const
{
    {
        const QMutexLocker locker(&myMutex);
        const auto value = myValues.constFind(theKey);
        if (value != myValues.cend())
            return value->parts;
    }
    const Row* row = findRow(theKey);
    return row ? builtIn(*row, *this) : QStringList();
}

QString VXDeploymentConfig::text(const QString& theKey) const
{
    const QStringList values = parts(theKey);
    return values.size() == 1 ? values.first() : values.join(", "_L1);
}

int VXDeploymentConfig::number(const QString& theKey) const
{
    return text(theKey).toInt();
}

bool VXDeploymentConfig::isEnabled(const QString& theKey) const
{
    const QString value = text(theKey);
    return value == "1"_L1 || value.compare("true"_L1, Qt::CaseInsensitive) == 0;
}

QUrl VXDeploymentConfig::url(const QString& theKey) const
{
    return QUrl(text(theKey), QUrl::StrictMode);
}

QStringList VXDeploymentConfig::list(const QString& theKey) const
{
    QStringList items = parts(theKey);
    items.removeAll(QString());
    return items;
}

QList<VXDeploymentConfig::Entry> VXDeploymentConfig::entries() const
{
    QHash<QString, Value> values;
    {
        const QMutexLocker locker(&myMutex);
        values = myValues;
    }
    for (const Row& row : rows) {
        const QString key = QString::fromLatin1(row.key);
        if (!values.contains(key))
            values.insert(key, {builtIn(row, *this), builtInOrigin});
    }

    QList<Entry> entries;
    for (auto value = values.cbegin(); value != values.cend(); ++value) {
        const Kind kind = findRow(value.key())->kind;
        const QString text = value->parts.join(", "_L1);
        const bool isSecret = kind == Kind::DesKey || kind == Kind::Secret;
        entries.append({value.key(), isSecret && !text.isEmpty() ? u"***"_s : text, value->origin});
    }
    std::ranges::sort(entries, {}, &Entry::key);
    return entries;
}
