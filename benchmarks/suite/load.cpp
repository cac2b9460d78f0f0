// What loading the library costs beyond loading Qt. Links neither, so that it can load them in this
// order: vx-bench-load LIBRARY DEPENDENCY... loads the dependencies first, then measures the
// library. Prints a line: nanoseconds, nanoseconds of processor time, files opened, regular
// expressions compiled, bytes allocated.

#include <atomic>
#include <chrono>
#include <cstdarg>
#include <cstdio>
#include <ctime>

#include <dlfcn.h>
#include <fcntl.h>
#include <malloc.h>

namespace {

std::atomic<int> openedFiles = 0;
std::atomic<int> compiledExpressions = 0;

template <typename Function>
Function* next(const char* theName)
{
    return reinterpret_cast<Function*>(dlsym(RTLD_NEXT, theName));
}

long long cpuNanoseconds()
{
    timespec now{};
    clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &now);
    return static_cast<long long>(now.tv_sec) * 1'000'000'000 + now.tv_nsec;
}

mode_t modeOf(int theFlags, va_list theArguments)
{
    return (theFlags & (O_CREAT | O_TMPFILE)) != 0 ? va_arg(theArguments, mode_t) : 0;
}

} // namespace

// Stand in front of those of the C library and of PCRE, for everybody in this process. The dynamic
// linker itself does not come through here. The names are given to the assembler only: the C
// library's headers may make inline functions of them.
extern "C" {
int countedOpen(const char* thePath, int theFlags, ...) __asm__("open");
int countedOpen64(const char* thePath, int theFlags, ...) __asm__("open64");
FILE* countedFopen(const char* thePath, const char* theMode) __asm__("fopen");
FILE* countedFopen64(const char* thePath, const char* theMode) __asm__("fopen64");
void* countedCompile(const void* thePattern, size_t theLength, unsigned int theOptions,
                     int* theError, size_t* theOffset,
                     void* theContext) __asm__("pcre2_compile_16");

int countedOpen(const char* thePath, int theFlags, ...)
{
    va_list arguments;
    va_start(arguments, theFlags);
    const mode_t mode = modeOf(theFlags, arguments);
    va_end(arguments);
    ++openedFiles;
    return next<int(const char*, int, mode_t)>("open")(thePath, theFlags, mode);
}

int countedOpen64(const char* thePath, int theFlags, ...)
{
    va_list arguments;
    va_start(arguments, theFlags);
    const mode_t mode = modeOf(theFlags, arguments);
    va_end(arguments);
    ++openedFiles;
    return next<int(const char*, int, mode_t)>("open64")(thePath, theFlags, mode);
}

FILE* countedFopen(const char* thePath, const char* theMode)
{
    ++openedFiles;
    return next<FILE*(const char*, const char*)>("fopen")(thePath, theMode);
}

FILE* countedFopen64(const char* thePath, const char* theMode)
{
    ++openedFiles;
    return next<FILE*(const char*, const char*)>("fopen64")(thePath, theMode);
}

void* countedCompile(const void* thePattern, size_t theLength, unsigned int theOptions,
                     int* theError, size_t* theOffset, void* theContext)
{
    ++compiledExpressions;
    return next<void*(const void*, size_t, unsigned int, int*, size_t*, void*)>("pcre2_compile_16")(
        thePattern, theLength, theOptions, theError, theOffset, theContext);
}
}

int main(int theArgumentCount, char* theArguments[])
{
    using Clock = std::chrono::steady_clock;
    for (int i = 2; i < theArgumentCount; ++i) {
        if (!dlopen(theArguments[i], RTLD_NOW | RTLD_GLOBAL)) {
            std::fprintf(stderr, "%s\n", dlerror());
            return 1;
        }
    }
    openedFiles = 0;
    compiledExpressions = 0;
    const size_t allocated = mallinfo2().uordblks;
    const long long cpuStart = cpuNanoseconds();
    const Clock::time_point start = Clock::now();
    const bool isLoaded = theArgumentCount > 1 && dlopen(theArguments[1], RTLD_NOW) != nullptr;
    const auto duration = Clock::now() - start;
    const long long cpu = cpuNanoseconds() - cpuStart;
    if (!isLoaded) {
        std::fprintf(stderr, "%s\n", theArgumentCount > 1 ? dlerror() : "which library?");
        return 1;
    }
    std::printf("%lld %lld %d %d %zu\n",
                static_cast<long long>(std::chrono::nanoseconds(duration).count()), cpu,
                openedFiles.load(), compiledExpressions.load(), mallinfo2().uordblks - allocated);
    return 0;
}
