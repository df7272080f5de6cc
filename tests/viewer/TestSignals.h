#pragma once

#include "viewer/core/SignalSource.h"

#include <cmath>
#include <limits>

/// Two messages: Engine (0x100) with Speed in bytes 0 and 1 (factor 0.5, low byte first) and State in byte 2, which is
/// there only when byte 3 is 1; EngineTemp (extended 0x18FF1234) with Temp in byte 0, offset -40.
class TestSignals : public SignalSource
{
public:
    enum { Speed, State, Temp };

    QVector<Message> messages() const override
    {
        return {{0x100, QStringLiteral("Engine")}, {ExtendedKey | 0x18FF1234U, QStringLiteral("EngineTemp")}};
    }
    QStringList signalNames() const override
    {
        return {QStringLiteral("Speed"), QStringLiteral("State"), QStringLiteral("Engine.Speed"),
                QStringLiteral("Temp")};
    }
    int signalNumber(const QString &name) const override
    {
        const int number = signalNames().indexOf(name);
        return number == 2 ? Speed : number == 3 ? Temp : number;
    }
    QVector<FrameKey> carriers(int signal) const override
    {
        return {signal == Temp ? ExtendedKey | 0x18FF1234U : 0x100};
    }
    double value(int signal, const BusFrame &frame) const override
    {
        constexpr double None = std::numeric_limits<double>::quiet_NaN();
        if (signal == Temp) {
            return frame.length > 0 ? frame.data[0] - 40.0 : None;
        }
        if (signal == State) {
            return frame.length > 3 && frame.data[3] == 1 ? frame.data[2] : None;
        }
        return frame.length > 1 ? (frame.data[0] | frame.data[1] << 8) * 0.5 : None;
    }
    QString valueText(int signal, double value) const override
    {
        return signal == State && value == 1 ? QStringLiteral("On") : QString();
    }
    QVector<SignalSource::State> states(int signal) const override
    {
        return signal == State ? QVector<SignalSource::State>{{0, QStringLiteral("Off")},
                                                              {1, QStringLiteral("On")},
                                                              {7, QStringLiteral("Open")},
                                                              {8, QStringLiteral("Open \"again\"")},
                                                              {9, QStringLiteral("Open")}}
                               : QVector<SignalSource::State>();
    }
};
