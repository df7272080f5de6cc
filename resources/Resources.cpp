#include "resources/Resources.h"

#include <QtGlobal>

void initResources()
{
    // Without a reference the linker leaves the resource data of a static library out.
    Q_INIT_RESOURCE(x9);
}
