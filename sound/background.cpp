#include "sound/background.h"

#ifdef _WIN32
#include <windows.h>
#elif defined(__linux__)
#include <sys/resource.h>
#include <sys/syscall.h>
#include <unistd.h>
#endif

void WorkInBackground() {
#ifdef _WIN32
    SetThreadPriority(GetCurrentThread(), THREAD_PRIORITY_LOWEST);
#elif defined(__linux__)
    constexpr int Nice = 10;
    // On Linux a thread has a nice value of its own.
    setpriority(PRIO_PROCESS, static_cast<id_t>(syscall(SYS_gettid)), Nice);
#endif
}
