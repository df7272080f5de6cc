#pragma once

#include "exchange/BusFrame.h"

#include "viewer/core/BusFrameStore.h"

#include <QByteArray>

#include <algorithm>
#include <vector>

/// A received frame of the first channel.
inline BusFrame canFrame(qint64 time, quint32 identifier, const char *hexData = "", quint16 flags = 0)
{
    BusFrame frame;
    frame.time = time;
    frame.identifier = identifier;
    frame.flags = flags;
    const QByteArray data = QByteArray::fromHex(hexData);
    frame.length = static_cast<quint8>(data.size());
    std::copy(data.begin(), data.end(), frame.data.begin());
    return frame;
}

/// A frame in which every field tells its number: of 8 bytes, every 50th of 64.
inline BusFrame numberedFrame(qint64 number)
{
    constexpr int LongFrames = 50;
    BusFrame frame;
    frame.time = number * 1000;
    frame.deviceTime = number * 1000 + 1;
    frame.identifier = static_cast<quint32>(number % 2048);
    frame.channel = static_cast<quint16>(number % 3);
    frame.direction = static_cast<BusFrame::Direction>(number % 3);
    frame.linState = static_cast<BusFrame::LinState>(number % 6);
    frame.checksum = static_cast<quint8>(number);
    frame.set(BusFrame::Extended, number % 7 == 0);
    frame.set(BusFrame::Fd, number % LongFrames == 0);
    frame.length = number % LongFrames == 0 ? 64 : 8;
    for (int i = 0; i < frame.length; ++i) {
        frame.data[static_cast<std::size_t>(i)] = static_cast<uchar>(number + i);
    }
    return frame;
}

inline bool isSame(const BusFrame &a, const BusFrame &b)
{
    return a.time == b.time && a.deviceTime == b.deviceTime && a.identifier == b.identifier && a.channel == b.channel &&
           a.flags == b.flags && a.direction == b.direction && a.length == b.length && a.checksum == b.checksum &&
           a.linState == b.linState && a.data == b.data;
}

inline void fill(BusFrameStore &store, const std::vector<BusFrame> &frames)
{
    store.append(frames.data(), static_cast<int>(frames.size()));
}

inline void fillNumbered(BusFrameStore &store, qint64 count)
{
    constexpr qint64 BatchSize = 1000;
    std::vector<BusFrame> batch;
    for (qint64 first = 0; first < count; first += BatchSize) {
        batch.clear();
        for (qint64 i = first; i < std::min(count, first + BatchSize); ++i) {
            batch.push_back(numberedFrame(i));
        }
        fill(store, batch);
    }
}
