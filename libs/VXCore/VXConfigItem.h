#pragma once

#include "VXConfigItemCodec.h"
#include "VXSettings.h"

#include <QtCore/QString>

#include <optional>
#include <utility>

/// A value with its default, which one entry of the settings store keeps. A plain value; reentrant.
///
/// How a T looks in the store is the business of VXConfigItemCodec<T>.
template <typename T>
class VXConfigItem
{
public:
    /// Holds the default until load() or setValue(). theKey is relative to the group that is open
    /// then.
    VXConfigItem(const QString& theKey, const T& theDefault)
        : myKey(theKey)
        , myDefault(theDefault)
        , myValue(theDefault)
    {
    }

    /// Relative to the group that is open when the item is loaded or saved.
    [[nodiscard]] QString key() const { return myKey; }

    /// What load() falls back to.
    [[nodiscard]] T defaultValue() const { return myDefault; }

    /// The value in memory; the store may hold another one while isModified().
    [[nodiscard]] T value() const { return myValue; }

    /// Whether a different value was set since the item was made, loaded or saved.
    [[nodiscard]] bool isModified() const noexcept { return myIsModified; }

    /// Changes the value in memory only; save() keeps it. An equal value modifies nothing.
    void setValue(const T& theValue)
    {
        if (myValue == theValue)
            return;
        myValue = theValue;
        myIsModified = true;
    }

    /// Reads the entry in the group that is open. Without one, or with one that cannot be read, the
    /// value becomes the default and the answer is false.
    bool load(const VXSettings& theSettings)
    {
        const std::optional<T> read = VXConfigItemCodec<T>::decode(theSettings.value(myKey));
        myValue = read.value_or(myDefault);
        myIsModified = false;
        return read.has_value();
    }

    /// Writes the entry into the group that is open, also when nothing was modified. False when the
    /// store cannot be written.
    bool save(VXSettings& theSettings)
    {
        const bool isWritten = theSettings.writeEntry(myKey, VXConfigItemCodec<T>::encode(myValue));
        myIsModified = myIsModified && !isWritten;
        return isWritten;
    }

private:
    QString myKey;
    T myDefault;
    T myValue;
    bool myIsModified = false;
};
