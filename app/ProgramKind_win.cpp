#include "app/ProgramKind.h"

QString programKind()
{
    return programKindFor(8 * int(sizeof(void *)));
}

QString programKindFor(int libraryBits)
{
    return QStringLiteral("windows-%1bit").arg(libraryBits);
}
