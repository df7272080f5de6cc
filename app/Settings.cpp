#include "app/Settings.h"

#include <QCoreApplication>
#include <QSettings>

int getLanguage()
{
    const QSettings settings(QCoreApplication::applicationDirPath() + QStringLiteral("/Init.ini"),
                             QSettings::IniFormat);
    return settings.value(QStringLiteral("language"), 0).toInt();
}
