#pragma once

#include <QtCore/QString>

/// The name under which a received photo is stored. Not exported. Static operations only;
/// reentrant.
class VXUploadFileName
{
public:
    VXUploadFileName() = delete;

    /// "%1.qrul.%2" of what stands before and after the last dot. The name comes from the network:
    /// only what follows its last "/" counts, and it is never resolved as a path. A U+0000 would
    /// cut the name short in the system call that renames the file, so it is dropped.
    [[nodiscard]] static QString stored(const QString& theFileName);
};
