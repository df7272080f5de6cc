#include "app/Release.h"

#include "device/Version.h"

QString programVersion()
{
    return QStringLiteral(X9_VERSION);
}

QString webSite()
{
    return QStringLiteral(X9CAN_WEB_SITE);
}

QString supportAddress()
{
    return QStringLiteral(X9CAN_SUPPORT);
}

bool isNewerThanProgram(const Release &release)
{
    return compareVersion(release.versionNo, programVersion()) == 1;
}
