#pragma once

#include <QString>
#include <QTime>

/// The time of day as frames are listed with it, "hh:mm:ss.zzz".
inline QString clockText()
{
    return QTime::currentTime().toString(QStringLiteral("hh:mm:ss.zzz"));
}
