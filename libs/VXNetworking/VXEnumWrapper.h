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
    VXEnumWrapper(E theValue = static_cast<E>(0))
        : myValue(static_cast<qint32>(theValue))
    {
    }
    VXEnumWrapper(const VXEnumWrapper&) = default;
    VXEnumWrapper(VXEnumWrapper&&) noexcept = default;
    VXEnumWrapper& operator=(const VXEnumWrapper&) = default;
    VXEnumWrapper& operator=(VXEnumWrapper&&) noexcept = default;
    virtual ~VXEnumWrapper() = default;

    virtual bool operator<(const VXEnumWrapper& theOther) const
    {
        return myValue < theOther.myValue;
    }
    virtual bool operator<=(const VXEnumWrapper& theOther) const
    {
        return myValue <= theOther.myValue;
    }
    virtual bool operator>(const VXEnumWrapper& theOther) const
    {
        return myValue > theOther.myValue;
    }

    virtual bool operator==(const VXEnumWrapper& theOther) const
    {
        return myValue == theOther.myValue;
    }
    virtual bool operator==(E theValue) const { return myValue == static_cast<qint32>(theValue); }
    virtual bool operator!=(const VXEnumWrapper& theOther) const
    {
        return myValue != theOther.myValue;
    }
    virtual bool operator!=(E theValue) const { return myValue != static_cast<qint32>(theValue); }

    virtual VXEnumWrapper& operator|=(const VXEnumWrapper& theOther)
    {
        myValue |= theOther.myValue;
        return *this;
    }
    virtual VXEnumWrapper& operator|=(E theValue)
    {
        myValue |= static_cast<qint32>(theValue);
        return *this;
    }
    virtual VXEnumWrapper& operator&=(const VXEnumWrapper& theOther)
    {
        myValue &= theOther.myValue;
        return *this;
    }
    virtual VXEnumWrapper& operator&=(E theValue)
    {
        myValue &= static_cast<qint32>(theValue);
        return *this;
    }

    virtual qint32 operator&(const VXEnumWrapper& theOther) const
    {
        return myValue & theOther.myValue;
    }
    virtual qint32 operator|(const VXEnumWrapper& theOther) const
    {
        return myValue | theOther.myValue;
    }

    /// Removes the flags of the argument.
    virtual void exclude(const VXEnumWrapper& theOther) { myValue &= ~theOther.myValue; }
    virtual void exclude(E theValue) { myValue &= ~static_cast<qint32>(theValue); }

    /// Adds the flags of the argument. The first form calls the second, so that a derived class
    /// need override only that one.
    virtual void expandTo(const VXEnumWrapper& theOther) { expandTo(theOther.value()); }
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
