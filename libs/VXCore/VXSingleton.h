#pragma once

#include <QtCore/QReadWriteLock>
#include <QtCore/QtGlobal>

#include <memory>
#include <type_traits>
#include <utility>

/// The one instance of T in the process, made when it is first asked for.
///
/// Default visibility whatever the compiler options say: the application and the libraries must
/// reach the same instance. T itself has to be exported, or visible by default, for that.
///
/// The instance is never destroyed, so it may be used in destructors of static objects too; it
/// stays reachable. All operations are thread-safe; the instance itself guards what it holds.
///
/// T may derive from VXSingleton<T>, which gives it T::instance() and setupInstance(), or be any
/// class with a default constructor that VXSingleton<T> may call. Neither the constructor nor
/// setupInstance() may ask for the instance that is being made: the lock is not recursive.
template <typename T>
class Q_DECL_EXPORT VXSingleton
{
    Q_DISABLE_COPY_MOVE(VXSingleton)

public:
    /// The instance; never null.
    [[nodiscard]] Q_DECL_EXPORT static T* instance();

    /// True when the instance exists already. Does not make it.
    [[nodiscard]] Q_DECL_EXPORT static bool hasInstance();

    /// Replaces the instance and returns the one before it, null when there was none. For the
    /// start of a host and for tests: who still holds the former instance keeps on using it.
    Q_DECL_EXPORT static std::unique_ptr<T> setInstance(std::unique_ptr<T> theInstance);

protected:
    VXSingleton() = default;
    virtual ~VXSingleton() = default;

    /// Called once, right after instance() has made the instance, before anybody else sees it.
    virtual void setupInstance() {}

private:
    struct State
    {
        QReadWriteLock lock;
        T* instance = nullptr; // guarded by lock
    };

    [[nodiscard]] Q_DECL_EXPORT static State& state();
};

template <typename T>
typename VXSingleton<T>::State& VXSingleton<T>::state()
{
    // Made on first use, hence ready during static initialisation; never destroyed, hence usable
    // by threads that outlive main().
    static State* const ourState = new State;
    return *ourState;
}

template <typename T>
T* VXSingleton<T>::instance()
{
    State& shared = state();
    {
        const QReadLocker reader(&shared.lock);
        if (shared.instance)
            return shared.instance;
    }
    const QWriteLocker writer(&shared.lock);
    if (!shared.instance) {
        std::unique_ptr<T> made(new T);
        if constexpr (std::is_base_of_v<VXSingleton<T>, T>)
            static_cast<VXSingleton<T>*>(made.get())->setupInstance();
        shared.instance = made.release(); // never destroyed, see above
    }
    return shared.instance;
}

template <typename T>
bool VXSingleton<T>::hasInstance()
{
    State& shared = state();
    const QReadLocker reader(&shared.lock);
    return shared.instance != nullptr;
}

template <typename T>
std::unique_ptr<T> VXSingleton<T>::setInstance(std::unique_ptr<T> theInstance)
{
    State& shared = state();
    const QWriteLocker writer(&shared.lock);
    return std::unique_ptr<T>(std::exchange(shared.instance, theInstance.release()));
}
