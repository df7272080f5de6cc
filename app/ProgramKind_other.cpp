#include "app/ProgramKind.h"

#include <QSysInfo>

QString programKind()
{
    return QSysInfo::kernelType() + QLatin1Char('-') + QSysInfo::buildCpuArchitecture();
}

/// There is one package.
QString programKindFor(int /*libraryBits*/)
{
    return {};
}
