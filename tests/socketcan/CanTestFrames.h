#pragma once

#include "adapter/CanFrame.h"
#include "device/AdapterRecords.h"

#include <QByteArray>
#include <QString>

#include <cstring>

// Frames as text, as candump writes them: 123#1122, 12345678#R4, 123##1AABB with the flags behind the second mark (1:
// bit rate switch).

inline va::CanFrame frameOf(const QByteArray &text)
{
    va::CanFrame frame;
    const int mark = text.indexOf('#');
    frame.id = text.left(mark).toUInt(nullptr, 16);
    frame.extended = mark == 8;
    QByteArray rest = text.mid(mark + 1);
    if (rest.startsWith('#')) {
        frame.format = rest.at(1) == '0' ? va::FrameFormat::Fd : va::FrameFormat::FdBitRateSwitch;
        rest = rest.mid(2);
    }
    frame.remote = rest.startsWith('R');
    const QByteArray data = frame.remote ? QByteArray() : QByteArray::fromHex(rest);
    frame.length = static_cast<std::uint8_t>(frame.remote ? rest.mid(1).toInt() : data.size());
    std::memcpy(frame.data.data(), data.constData(), static_cast<std::size_t>(data.size()));
    return frame;
}

inline QByteArray textOf(std::uint32_t id, bool isExtended, bool isRemote, int fdFlag, int length,
                         const std::uint8_t *data)
{
    QByteArray text = QByteArray::number(id, 16).toUpper().rightJustified(isExtended ? 8 : 3, '0') + '#';
    if (fdFlag != 0) {
        text += fdFlag == 1 ? "#0" : "#1";
    }
    if (isRemote) {
        return text + 'R' + QByteArray::number(length);
    }
    return text + QByteArray(reinterpret_cast<const char *>(data), length).toHex().toUpper();
}

inline QByteArray textOf(const va::CanFrame &frame)
{
    return textOf(frame.id, frame.extended, frame.remote, static_cast<int>(frame.format), frame.length,
                  frame.data.data());
}

inline QByteArray textOf(const VCI_CAN_OBJ &record)
{
    return textOf(record.ID, record.ExternFlag == 1, record.RemoteFlag == 1, 0, record.DataLen, record.Data);
}

inline QByteArray textOf(const VCI_CANFD_OBJ &record)
{
    return textOf(record.ID, record.ExternFlag == 1, record.RemoteFlag == 1, record.FDFlag, record.DataLen,
                  record.Data);
}

template<class Record>
Record recordOf(const QByteArray &text)
{
    const va::CanFrame frame = frameOf(text);
    Record record{};
    record.ID = frame.id;
    record.ExternFlag = frame.extended ? 1 : 0;
    record.RemoteFlag = frame.remote ? 1 : 0;
    record.DataLen = frame.length;
    std::memcpy(record.Data, frame.data.data(), sizeof record.Data);
    if constexpr (sizeof(Record) == sizeof(VCI_CANFD_OBJ)) {
        record.FDFlag = static_cast<std::uint8_t>(frame.format);
    }
    return record;
}

inline VCI_INIT_CONFIG settingsOf(unsigned dataRate = 0, bool listenOnly = false)
{
    VCI_INIT_CONFIG config{};
    config.AccMask = 0xFFFFFFFFU;
    config.Timing1 = 0x1C; // 500 kbit/s
    config.Mode = static_cast<std::uint8_t>((dataRate << AdapterModeDataRateShift) | AdapterModeAlways |
                                            (listenOnly ? AdapterModeListenOnly : 0U));
    return config;
}
