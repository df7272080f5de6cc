#pragma once

#include "viewer/core/SignalSource.h"

#include <QHash>

/// The names of messages, by identifier and channel. A plain value.
class FrameNames
{
public:
    FrameNames() = default;
    /// Of messages for the same frames the first one names them.
    FrameNames(const QVector<SignalSource::Message> &messages);
    /// source may be null.
    explicit FrameNames(const SignalSource *source);

    bool isEmpty() const { return m_messages.isEmpty(); }
    /// channel: from 0. Empty where there is none.
    QString of(FrameKey key, int channel) const;

private:
    QHash<FrameKey, QVector<SignalSource::Message>> m_messages;
};
