#include "app/Release.h"

#include "device/Version.h"

QString programVersion()
{
    return QStringLiteral(X9_VERSION);
}

bool isNewerThanProgram(const Release &release)
{
    return compareVersion(release.versionNo, programVersion()) == 1;
}
