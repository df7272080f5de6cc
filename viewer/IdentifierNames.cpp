#include "viewer/IdentifierNames.h"

#include "viewer/core/OpenCapture.h"
#include "viewer/core/SignalSource.h"

FrameColumns::Names identifierNames(const OpenCapture &capture)
{
    FrameColumns::Names names;
    if (capture.signalSource()) {
        const QVector<SignalSource::Message> messages = capture.signalSource()->messages();
        for (const SignalSource::Message &message : messages) {
            names.insert(message.key, message.name);
        }
    }
    return names;
}

QString identifierLabel(FrameKey key, quint16 channel, const FrameColumns::Names &names)
{
    const QString text = (key & ErrorKey) != 0 ? QCoreApplication::translate("IdentifierNames", "error frames")
                                               : FrameColumns::identifierText(key);
    return QStringLiteral("%1: %2  %3").arg(channel + 1).arg(text, names.value(key)).trimmed();
}

QString identifierFilterOn(FrameKey key, quint16 channel)
{
    return QStringLiteral("%1 and channel == %2").arg(FrameColumns::identifierFilter(key)).arg(channel + 1);
}
