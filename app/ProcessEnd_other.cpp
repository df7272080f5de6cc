#include "app/ProcessEnd.h"

#include <cstdlib>

void endProcessNow(int exitCode)
{
    std::_Exit(exitCode);
}
