#include "viewer/IdentifierNames.h"

QString identifierLabel(FrameKey key, quint16 channel, const FrameNames &names)
{
    const QString text = (key & ErrorKey) != 0 ? QCoreApplication::translate("IdentifierNames", "error frames")
                                               : FrameColumns::identifierText(key);
    return QStringLiteral("%1: %2  %3").arg(channel + 1).arg(text, names.of(key, channel)).trimmed();
}

QString identifierFilterOn(FrameKey key, quint16 channel)
{
    return QStringLiteral("%1 and channel == %2").arg(FrameColumns::identifierFilter(key)).arg(channel + 1);
}
