// Tells ThreadSanitizer what Qt's locks and calls between threads order.
//
// The distribution's Qt is not instrumented, so its own atomics are invisible and correct programs
// are reported. The functions here stand in front of the exported ones of Qt (the program is
// linked with -rdynamic), call them, and add the happens-before edge that they make.
// Linked into thread tests of the tsan preset only; see docs/sanitizers.md.

#include <QtCore/QCoreApplication>
#include <QtCore/QMetaObject>
#include <QtCore/QMutex>
#include <QtCore/QReadWriteLock>

#include <cstdio>
#include <cstdlib>

#include <dlfcn.h>

extern "C" {
void __tsan_acquire(void* theAddress);
void __tsan_release(void* theAddress);
void AnnotateNewMemory(const char* theFile, int theLine, const volatile void* theAddress,
                       long theSize);
}

namespace {

/// Qt's own function of that (mangled) name.
template <typename Function>
Function original(const char* theName)
{
    auto* const function = reinterpret_cast<Function>(dlsym(RTLD_NEXT, theName));
    if (!function) {
        std::fprintf(stderr, "VXTsanInterpose: no %s in this Qt\n", theName);
        std::abort();
    }
    return function;
}

// Signals and posted events share one object: coarse, but every edge is a real one as soon as the
// receiver emits something itself.
char callsBetweenThreads;

void passCalls()
{
    __tsan_acquire(&callsBetweenThreads);
    __tsan_release(&callsBetweenThreads);
}

bool acquireIf(bool theIsLocked, void* theLock)
{
    if (theIsLocked)
        __tsan_acquire(theLock);
    return theIsLocked;
}

} // namespace

void QReadWriteLock::lockForRead()
{
    static const auto next =
        original<void (*)(QReadWriteLock*)>("_ZN14QReadWriteLock11lockForReadEv");
    next(this);
    __tsan_acquire(this);
}

bool QReadWriteLock::tryLockForRead()
{
    static const auto next =
        original<bool (*)(QReadWriteLock*)>("_ZN14QReadWriteLock14tryLockForReadEv");
    return acquireIf(next(this), this);
}

bool QReadWriteLock::tryLockForRead(int theTimeout)
{
    static const auto next =
        original<bool (*)(QReadWriteLock*, int)>("_ZN14QReadWriteLock14tryLockForReadEi");
    return acquireIf(next(this, theTimeout), this);
}

void QReadWriteLock::lockForWrite()
{
    static const auto next =
        original<void (*)(QReadWriteLock*)>("_ZN14QReadWriteLock12lockForWriteEv");
    next(this);
    __tsan_acquire(this);
}

bool QReadWriteLock::tryLockForWrite()
{
    static const auto next =
        original<bool (*)(QReadWriteLock*)>("_ZN14QReadWriteLock15tryLockForWriteEv");
    return acquireIf(next(this), this);
}

bool QReadWriteLock::tryLockForWrite(int theTimeout)
{
    static const auto next =
        original<bool (*)(QReadWriteLock*, int)>("_ZN14QReadWriteLock15tryLockForWriteEi");
    return acquireIf(next(this, theTimeout), this);
}

void QReadWriteLock::unlock()
{
    static const auto next = original<void (*)(QReadWriteLock*)>("_ZN14QReadWriteLock6unlockEv");
    __tsan_release(this);
    next(this);
}

bool QRecursiveMutex::tryLock(int theTimeout) QT_MUTEX_LOCK_NOEXCEPT
{
    static const auto next =
        original<bool (*)(QRecursiveMutex*, int)>("_ZN15QRecursiveMutex7tryLockEi");
    return acquireIf(next(this, theTimeout), this);
}

void QRecursiveMutex::unlock() noexcept
{
    static const auto next = original<void (*)(QRecursiveMutex*)>("_ZN15QRecursiveMutex6unlockEv");
    __tsan_release(this);
    next(this);
}

// The uncontended ways of QBasicMutex are inline and instrumented; these are the others.
void QBasicMutex::lockInternal() QT_MUTEX_LOCK_NOEXCEPT
{
    static const auto next = original<void (*)(QBasicMutex*)>("_ZN11QBasicMutex12lockInternalEv");
    next(this);
    __tsan_acquire(this);
}

bool QBasicMutex::lockInternal(int theTimeout) QT_MUTEX_LOCK_NOEXCEPT
{
    static const auto next =
        original<bool (*)(QBasicMutex*, int)>("_ZN11QBasicMutex12lockInternalEi");
    return acquireIf(next(this, theTimeout), this);
}

void QBasicMutex::unlockInternal() noexcept
{
    static const auto next = original<void (*)(QBasicMutex*)>("_ZN11QBasicMutex14unlockInternalEv");
    __tsan_release(this);
    next(this);
}

void QCoreApplication::postEvent(QObject* theReceiver, QEvent* theEvent, int thePriority)
{
    static const auto next = original<void (*)(QObject*, QEvent*, int)>(
        "_ZN16QCoreApplication9postEventEP7QObjectP6QEventi");
    __tsan_release(&callsBetweenThreads);
    next(theReceiver, theEvent, thePriority);
}

void QMetaObject::activate(QObject* theSender, const QMetaObject* theMeta, int theLocalIndex,
                           void** theArguments)
{
    static const auto next = original<void (*)(QObject*, const QMetaObject*, int, void**)>(
        "_ZN11QMetaObject8activateEP7QObjectPKS_iPPv");
    passCalls();
    next(theSender, theMeta, theLocalIndex, theArguments);
    passCalls();
    // Qt's connection code reads the place of the return value once more after the slot, and only
    // then wakes the thread that waits here. That wake-up is inside Qt and cannot be seen.
    if (theArguments)
        AnnotateNewMemory(__FILE__, __LINE__, theArguments, sizeof *theArguments);
}
