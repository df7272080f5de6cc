#include "app/ServiceAddress.h"

#include "app/Settings.h"

#include <QUrl>

QString updateServer()
{
    const QString stored = storedUpdateServer();
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

bool isPlainHttp(const QString &service)
{
    return QUrl(service.trimmed()).scheme() == QLatin1String("http");
}
