#include "tests/support/StartedThreads.h"

#include <dlfcn.h>
#include <pthread.h>

#include <atomic>

namespace {

std::atomic<int> threads = 0;

} // namespace

int startedThreads()
{
    return threads;
}

// Stands before the system's: also for the libraries that this program is linked with.
extern "C" int pthread_create(pthread_t *newthread, const pthread_attr_t *attr, void *(*start_routine)(void *),
                              void *arg)
{
    static const auto create = reinterpret_cast<decltype(&pthread_create)>(dlsym(RTLD_NEXT, "pthread_create"));
    ++threads;
    return create(newthread, attr, start_routine, arg);
}
