#include "tests/exchange/FrameText.h"

#include <QList>

#include <algorithm>

QByteArray FrameText::text(const std::vector<BusFrame> &frames)
{
    QByteArray text;
    for (const BusFrame &frame : frames) {
        const QByteArray data(reinterpret_cast<const char *>(frame.data.data()),
                              frame.is(BusFrame::Remote) ? 0 : frame.length);
        const QList<QByteArray> fields = {QByteArray::number(frame.time),
                                          QByteArray::number(frame.channel),
                                          frame.direction == BusFrame::Sent ? "tx" : "rx",
                                          QByteArray::number(frame.identifier, 16).toUpper(),
                                          QByteArray::number(frame.flags, 16),
                                          QByteArray::number(frame.length),
                                          data.isEmpty() ? QByteArray("-") : data.toHex()};
        text += fields.join(' ') + '\n';
    }
    return text;
}

std::vector<BusFrame> FrameText::frames(const QByteArray &text)
{
    std::vector<BusFrame> frames;
    const QList<QByteArray> lines = text.split('\n');
    for (const QByteArray &line : lines) {
        const QList<QByteArray> fields = line.split(' ');
        if (fields.size() != 7) {
            continue;
        }
        BusFrame frame;
        frame.time = fields[0].toLongLong();
        frame.channel = fields[1].toUShort();
        frame.direction = fields[2] == "tx" ? BusFrame::Sent : BusFrame::Received;
        frame.identifier = fields[3].toUInt(nullptr, 16);
        frame.flags = fields[4].toUShort(nullptr, 16);
        frame.length = static_cast<quint8>(fields[5].toUInt());
        const QByteArray data = QByteArray::fromHex(fields[6]).left(BusFrame::MaxLength);
        std::copy(data.begin(), data.end(), frame.data.begin());
        frames.push_back(frame);
    }
    return frames;
}
