#pragma once

#include <QtCore/QByteArray>
#include <QtCore/QMap>
#include <QtCore/QString>

/// What stands in a folder, to see what an attack has changed.
class VXFolderContent
{
public:
    VXFolderContent() = delete;

    /// Every file below the folder, hidden ones too, by its path with what is in it; a folder has
    /// "<folder>".
    [[nodiscard]] static QMap<QString, QByteArray> of(const QString& theFolder);
};
