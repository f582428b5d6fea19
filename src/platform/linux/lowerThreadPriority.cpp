#include "lowerThreadPriority.h"

#include <sys/resource.h>
#include <unistd.h>

void lowerThreadPriority()
{
    // On Linux a thread has a nice value of its own (setpriority(2)), which the toolkit's thread priorities
    // leave as it is. Where it may not be changed, it stays.
    constexpr int niceValue = 10;
    thread_local const bool isLowered =
        ::setpriority(PRIO_PROCESS, static_cast<id_t>(::gettid()), niceValue) == 0;
    static_cast<void>(isLowered);
}
