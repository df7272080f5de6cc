#pragma once

#include "device/AdapterRecords.h"
#include "device/FrameIdentifier.h"

#include <QByteArray>
#include <QString>
#include <QVector>

#include <optional>

/// One frame as the user entered it in the send panel.
struct CanFrameInput
{
    quint32 id = 0;        ///< 11 or 29 bits
    bool extended = false; ///< 29-bit identifier
    bool remote = false;   ///< remote frame, classic CAN only
    quint8 protocol = 0;   ///< 0 CAN, 1 CAN FD, 2 CAN FD with bit rate switch
    QByteArray data;       ///< at most 8 (CAN FD: 64) bytes are sent
};

/// The number in a text of hexadecimal digits, with or without "0x" before it; blanks are ignored and at most 16
/// characters are read. Nothing when the text is no such number or needs more than 32 bits.
std::optional<quint32> numberFromHex(const QString &text);

/// What may be typed for such a number: the pattern of a validator that takes incomplete numbers, too.
QString hexNumberPattern();

/// Such a number as an identifier: nothing, too, when it is above the range of the frame type (frameIdMax()).
std::optional<quint32> frameIdFromText(const QString &text, bool extended);

/// What a half-typed identifier becomes while the user types: blanks removed, and the highest identifier of the frame
/// type instead of anything above it or longer than its digits.
QString correctedFrameIdText(const QString &text, bool extended);

/// A decimal number typed by the user; above the range the highest 32-bit one. Nothing when the text is empty or has
/// anything but digits.
std::optional<quint32> countFromText(const QString &text);

/// The same as a number that fits an int, the highest int above it; fallback when there is none.
int intFromText(const QString &text, int fallback);

/// The payload lengths on offer: 1 to 8, for CAN FD also 12 to 64 (ISO 11898-1 data length codes).
QVector<int> payloadLengths(bool isCANFD);

VCI_CAN_OBJ toClassicFrame(const CanFrameInput &input);
VCI_CANFD_OBJ toFdFrame(const CanFrameInput &input);

/// The identifier after id. The highest one of the frame type, frameIdMax(), stays.
quint32 incrementedFrameId(quint32 id, bool extended);

/// The payload after data, read as a little-endian counter. It stops when all bytes are 0xFF, it does not wrap.
QByteArray incrementedPayload(QByteArray data);
