#include "viewer/core/FrameNames.h"

FrameNames::FrameNames(const QVector<SignalSource::Message> &messages)
{
    for (const SignalSource::Message &message : messages) {
        m_messages[message.key].append(message);
    }
}

FrameNames::FrameNames(const SignalSource *source)
    : FrameNames(source != nullptr ? source->messages() : QVector<SignalSource::Message>())
{
}

QString FrameNames::of(FrameKey key, int channel) const
{
    const auto found = m_messages.constFind(key);
    if (found == m_messages.constEnd()) {
        return {};
    }
    for (const SignalSource::Message &message : *found) {
        if (message.channels.isEmpty() || message.channels.contains(channel)) {
            return message.name;
        }
    }
    return {};
}
