#include "tests/support/StartedThreads.h"

int startedThreads()
{
    return -1;
}
