#include "app/ServiceAddress.h"

#include "app/Settings.h"

QString updateServer()
{
    const QString stored = SettingsFiles::ofProgram().updateServer();
    return stored.isEmpty() ? QStringLiteral(X9CAN_UPDATE_SERVER) : stored;
}

QString webSite()
{
    return QStringLiteral(X9CAN_WEB_SITE);
}

QString supportAddress()
{
    return QStringLiteral(X9CAN_SUPPORT);
}
