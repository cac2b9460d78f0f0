#pragma once

#include "VXEnumToStringTable.h"
#include "VXNetworkingExport.h"

#include <QtCore/QAtomicPointer>
#include <QtCore/QMutex>
#include <QtCore/QMutexLocker>
#include <QtCore/QString>

#include <memory>

/// Holds one value of the enumeration E, or several combined as bit flags, and knows their texts.
///
/// A concrete wrapper fills its texts in fillTable(). The table of an enumeration exists once in
/// the process: the template has default visibility, and E needs it too (VXNETWORKING_EXPORT at the
/// enumeration) when several libraries use the wrapper. A value; reentrant.
template <typename E>
class VXNETWORKING_EXPORT VXEnumWrapper
{
public:
    /// Implicit, so that a value of E serves wherever a wrapper is wanted. Any number is taken.
    VXEnumWrapper(E theValue = static_cast<E>(0))
        : myValue(static_cast<qint32>(theValue))
    {
    }

    /// Copies the number; the texts are common to all wrappers of E.
    VXEnumWrapper(const VXEnumWrapper&) = default;

    /// Leaves the other wrapper as it was.
    VXEnumWrapper(VXEnumWrapper&&) noexcept = default;

    /// Takes over the number alone.
    VXEnumWrapper& operator=(const VXEnumWrapper&) = default;

    /// Leaves the other wrapper as it was.
    VXEnumWrapper& operator=(VXEnumWrapper&&) noexcept = default;
    virtual ~VXEnumWrapper() = default;

    /// By the numbers, not by the texts.
    virtual bool operator<(const VXEnumWrapper& theOther) const
    {
        return myValue < theOther.myValue;
    }

    /// By the numbers, not by the texts.
    virtual bool operator<=(const VXEnumWrapper& theOther) const
    {
        return myValue <= theOther.myValue;
    }

    /// By the numbers, not by the texts. There is no ">=".
    virtual bool operator>(const VXEnumWrapper& theOther) const
    {
        return myValue > theOther.myValue;
    }

    /// Equal numbers are equal, also combined flags.
    virtual bool operator==(const VXEnumWrapper& theOther) const
    {
        return myValue == theOther.myValue;
    }

    /// Whether theValue is the only flag set, where E holds flags.
    virtual bool operator==(E theValue) const { return myValue == static_cast<qint32>(theValue); }

    /// Compares by itself: overriding "==" does not change it.
    virtual bool operator!=(const VXEnumWrapper& theOther) const
    {
        return myValue != theOther.myValue;
    }

    /// The same with a value.
    virtual bool operator!=(E theValue) const { return myValue != static_cast<qint32>(theValue); }

    /// Adds flags like expandTo(), but does not call it.
    virtual VXEnumWrapper& operator|=(const VXEnumWrapper& theOther)
    {
        myValue |= theOther.myValue;
        return *this;
    }

    /// The same with a value.
    virtual VXEnumWrapper& operator|=(E theValue)
    {
        myValue |= static_cast<qint32>(theValue);
        return *this;
    }

    /// Keeps only the flags that the argument has as well.
    virtual VXEnumWrapper& operator&=(const VXEnumWrapper& theOther)
    {
        myValue &= theOther.myValue;
        return *this;
    }

    /// The same with a value, like reduceTo().
    virtual VXEnumWrapper& operator&=(E theValue)
    {
        myValue &= static_cast<qint32>(theValue);
        return *this;
    }

    /// The common flags, as a number: they need not be a value of E.
    virtual qint32 operator&(const VXEnumWrapper& theOther) const
    {
        return myValue & theOther.myValue;
    }

    /// The flags of both, as a number: they need not be a value of E.
    virtual qint32 operator|(const VXEnumWrapper& theOther) const
    {
        return myValue | theOther.myValue;
    }

    /// Removes the flags of the argument.
    virtual void exclude(const VXEnumWrapper& theOther) { myValue &= ~theOther.myValue; }

    /// The same with a value; neither form calls the other.
    virtual void exclude(E theValue) { myValue &= ~static_cast<qint32>(theValue); }

    /// Adds the flags of the argument. The first form calls the second, so that a derived class
    /// need override only that one.
    virtual void expandTo(const VXEnumWrapper& theOther) { expandTo(theOther.value()); }

    /// The form to override.
    virtual void expandTo(E theValue) { myValue |= static_cast<qint32>(theValue); }

    /// Keeps only the flags of theValue.
    virtual void reduceTo(E theValue) { myValue &= static_cast<qint32>(theValue); }

    /// What reduceTo() would leave.
    [[nodiscard]] virtual qint32 reducedTo(E theValue) const
    {
        return myValue & static_cast<qint32>(theValue);
    }

    /// Whether the value is not 0.
    [[nodiscard]] virtual bool isValid() const { return myValue != 0; }

    /// Inserts the texts of the enumeration. Called once in the process, under a lock.
    virtual void fillTable(VXEnumToStringTable<E>* theTable) const = 0;

    /// Combined flags come back as one value that E need not name.
    [[nodiscard]] E value() const noexcept { return static_cast<E>(myValue); }

    /// The text of the value; empty when it has none, for instance for combined flags.
    [[nodiscard]] QString encode() const { return enumToStringTable()->encode(value()); }

    /// The value of theText, whatever its case; the value 0 when the text is unknown.
    [[nodiscard]] E decode(const QString& theText) const
    {
        return enumToStringTable()->decode(theText);
    }

    /// The texts of E, filled at the first call. Lives until the process ends; any thread.
    [[nodiscard]] const VXEnumToStringTable<E>* enumToStringTable() const
    {
        if (const auto* table = ourTable.loadAcquire())
            return table;
        const QMutexLocker locker(&ourMutex);
        if (ourTable.loadRelaxed() == nullptr) {
            auto table = std::make_unique<VXEnumToStringTable<E>>();
            fillTable(table.get());
            ourTable.storeRelease(table.release()); // stays: others may read it until the very end
        }
        return ourTable.loadRelaxed();
    }

private:
    static inline QAtomicPointer<VXEnumToStringTable<E>> ourTable;
    static inline QMutex ourMutex; // guards the filling of ourTable

    qint32 myValue = 0;
};
