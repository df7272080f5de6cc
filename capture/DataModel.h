#pragma once

#include "device/AdapterRecords.h"

#include <QMetaType>
#include <QString>

/// One prepared frame of a send list: what is sent, how often, and how long the list waits after each send.
struct DataModel
{
    VCI_CAN_OBJ frame{};    ///< a classic data frame; bytes beyond its length are 0
    quint16 frameCount = 1; ///< copies in one transmit call, 1..65535
    quint16 sendCount = 1;  ///< sends, 1..65535
    quint16 interval = 1;   ///< milliseconds after a send, 1..65535
};

Q_DECLARE_METATYPE(DataModel)

constexpr int MaxClassicLength = 8;
constexpr int MaxSendListNumber = 0xFFFF; ///< of the counts and the interval

/// What the cells of a row hold, as the user left them.
struct DataModelCells
{
    quint32 id = 0;
    bool isExtended = false;
    int length = 0;
    QString data; ///< hexadecimal digits, white space ignored
    int frameCount = 1;
    int sendCount = 1;
    int interval = 1;
};

/// The row's frame. Numbers are brought into their ranges; a standard identifier above 0x7FF becomes 0x7FF. The length
/// decides: data beyond it is not sent, missing bytes are 0.
DataModel dataModelOf(const DataModelCells &cells);

/// The digits of typed data without white space, upper-case, two for each byte, of at most 8 bytes; a last single digit
/// is the low half of its byte (ABC: AB, 0C). Anything that is no hexadecimal digit is left out.
QString payloadDigits(const QString &typed);

/// The frame as it is sent on a CAN FD channel, which takes classic frames in a record of another kind.
VCI_CANFD_OBJ toCanFdRecord(const VCI_CAN_OBJ &frame);
