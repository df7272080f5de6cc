#pragma once

#include "viewer/core/FrameKey.h"

#include <QString>
#include <QStringList>
#include <QVector>

/// The names of messages and signals, and the values of signals, as a database has them. Does not change, so any thread
/// may ask.
class SignalSource
{
public:
    struct Message
    {
        FrameKey key;
        QString name;
        QVector<int> channels = {}; ///< from 0; empty: all
    };

    /// A value and what it stands for.
    struct State
    {
        double value;
        QString text;
    };

    SignalSource() = default;
    virtual ~SignalSource() = default;
    SignalSource(const SignalSource &) = delete;
    SignalSource &operator=(const SignalSource &) = delete;

    /// Of messages for the same frames the first one names them.
    virtual QVector<Message> messages() const = 0;
    /// Every signal by each name that it is found by: "Speed", "Engine.Speed".
    virtual QStringList signalNames() const = 0;
    /// -1 where no signal, or more than one, has that name.
    virtual int signalNumber(const QString &name) const = 0;
    /// The messages that a signal is in.
    virtual QVector<FrameKey> carriers(int signal) const = 0;
    /// The physical value, or of a signal that only stands for texts the raw one. frame: of one of the carriers. Not a
    /// number where it has none: another multiplexed signal is in its place, the frame is too short, or its data were
    /// not on the bus.
    virtual double value(int signal, const BusFrame &frame) const = 0;
    /// What a value stands for; empty where it is a number only.
    virtual QString valueText(int signal, double value) const = 0;
    /// The values that stand for something.
    virtual QVector<State> states(int /*signal*/) const { return {}; }
    /// Of its physical values; empty where they have none.
    virtual QString unit(int /*signal*/) const { return {}; }
};
