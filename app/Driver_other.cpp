#include "app/Driver.h"

bool installDriver()
{
    return false;
}

bool installMigrationDriver()
{
    return false;
}

bool isDeviceUnregistered()
{
    return true;
}
