#pragma once

#include <VXCore/VXBasisSettings.h>
#include <VXCore/VXDirectoryConfig.h>

#include <QtCore/QDir>
#include <QtCore/QFile>
#include <QtCore/QFileInfo>
#include <QtCore/QString>
#include <QtCore/QStringList>
#include <QtCore/QTemporaryDir>

/// The folders behind the scheme "tov" with a few files, secrets beside them, and spellings of
/// paths that try to reach those.
class VXAssetFolders
{
    Q_DISABLE_COPY_MOVE(VXAssetFolders)

public:
    VXAssetFolders()
    {
        using Root = VXDirectoryConfig::Root;
        VXDirectoryConfig* config = VXDirectoryConfig::instance();
        config->setRoot(Root::StartScreen, path(QStringLiteral("start/html")));
        config->setRoot(Root::Html, path(QStringLiteral("html")));
        config->setRoot(Root::BookProposals, path(QStringLiteral("books")));
        VXBasisSettings::instance()->setTemporaryDirectory(path(QStringLiteral("temp")));
        for (const char* folder : {"start/html", "html/threejs", "books", "temp"})
            QDir().mkpath(path(QLatin1StringView(folder)));
        for (const char* secret : {"secret.html", "start/secret.html", "start/html/.hidden.html"})
            write(QLatin1StringView(secret), QByteArrayLiteral("GEHEIM"));
    }
    ~VXAssetFolders() = default;

    [[nodiscard]] QString path(const QString& theRelativePath) const
    {
        return QFileInfo(myFolder.path()).canonicalFilePath() + u'/' + theRelativePath;
    }

    /// False when the file cannot be written. Folders are made.
    bool write(const QString& theRelativePath, const QByteArray& theContent) const
    {
        QDir().mkpath(QFileInfo(path(theRelativePath)).path());
        QFile file(path(theRelativePath));
        return file.open(QFile::WriteOnly) && file.write(theContent) == theContent.size();
    }

    /// More than 200 paths as they stand in an address, each with a slash in front.
    [[nodiscard]] QStringList traversals() const
    {
        static const QStringList prefixes{QStringLiteral("/"), QStringLiteral("//"),
                                          QStringLiteral("/threejs/"), QStringLiteral("/threejs"),
                                          QStringLiteral("/x/autoBookProposal/")};
        static const QStringList ups{QStringLiteral(".."),
                                     QStringLiteral("%2e%2e"),
                                     QStringLiteral("%2E."),
                                     QStringLiteral("%252e%252e"),
                                     QStringLiteral("..%00"),
                                     QStringLiteral("%c0%ae%c0%ae"),
                                     QStringLiteral("%ef%bc%8e%ef%bc%8e"),
                                     QStringLiteral("..;"),
                                     QStringLiteral("...."),
                                     QStringLiteral("..%20")};
        static const QStringList separators{QStringLiteral("/"), QStringLiteral("%2f"),
                                            QStringLiteral("%5c"), QStringLiteral("\\"),
                                            QStringLiteral("%252f")};
        QStringList paths = absolutePaths();
        for (const QString& prefix : prefixes)
            for (const QString& up : ups)
                for (const QString& separator : separators)
                    paths << prefix + (up + separator).repeated(2) + QStringLiteral("secret.html");
        return paths;
    }

private:
    [[nodiscard]] QStringList absolutePaths() const
    {
        const QString secret = path(QStringLiteral("secret.html"));
        QString encoded = secret;
        encoded.replace(u'/', QStringLiteral("%2f"));
        return {secret,
                u'/' + secret,
                QStringLiteral("/threejs") + secret,
                QStringLiteral("/autoBookProposal") + secret,
                u'/' + encoded,
                QStringLiteral("/threejs/") + encoded,
                QStringLiteral("/autoBookProposal/") + encoded,
                QStringLiteral("/file://") + secret,
                QStringLiteral("/.hidden.html"),
                QStringLiteral("/%2ehidden.html"),
                QStringLiteral("/etc/passwd"),
                QStringLiteral("/%2fetc%2fpasswd"),
                QStringLiteral("/proc/self/environ"),
                QStringLiteral("/:/qt-project.org/qmessagebox/images/qtlogo-64.png"),
                QStringLiteral("/qrc:/qtwebchannel/qwebchannel.js"),
                QStringLiteral("/~/secret.html"),
                QStringLiteral("/%7froot/secret.html"),
                QStringLiteral("/index.html%00/../../secret.html"),
                u'/' + QString(5000, u'a'),
                u'/' + QStringLiteral("../").repeated(2000) + QStringLiteral("etc/passwd")};
    }

    QTemporaryDir myFolder;
};
