#pragma once

#include <QtCore/QtGlobal>

/// Bytes that several users share. Use it in one thread.
class VXSimulatorBudget
{
    Q_DISABLE_COPY_MOVE(VXSimulatorBudget)

public:
    /// One user's part, given back with the object.
    class Share
    {
        Q_DISABLE_COPY_MOVE(Share)

    public:
        /// The budget must outlive the share.
        explicit Share(VXSimulatorBudget& theBudget);
        ~Share();

        /// Makes the part that large, in bytes. False, and nothing changes, when too little is
        /// left; 0 always succeeds.
        bool resize(qint64 theBytes);

    private:
        VXSimulatorBudget& myBudget;
        qint64 myBytes = 0;
    };

    explicit VXSimulatorBudget(qint64 theBytes);
    /// Bytes that nobody has.
    [[nodiscard]] qint64 left() const noexcept { return myLeft; }

private:
    qint64 myLeft = 0;
};
