#include "capture/DataModel.h"

#include "device/FrameIdentifier.h"

#include <QByteArray>
#include <QRegularExpression>

#include <algorithm>

namespace {
constexpr int DigitsPerByte = 2;

quint16 sendListNumber(int number)
{
    return static_cast<quint16>(std::clamp(number, 1, MaxSendListNumber));
}
} // namespace

DataModel dataModelOf(const DataModelCells &cells)
{
    DataModel model;
    model.frame.ID = std::min(cells.id, frameIdMax(cells.isExtended));
    model.frame.ExternFlag = cells.isExtended ? 1 : 0;
    const int length = std::clamp(cells.length, 0, MaxClassicLength);
    model.frame.DataLen = static_cast<quint8>(length);
    const QByteArray data = QByteArray::fromHex(payloadDigits(cells.data).toLatin1());
    std::copy_n(data.cbegin(), std::min(length, data.size()), model.frame.Data);
    model.frameCount = sendListNumber(cells.frameCount);
    model.sendCount = sendListNumber(cells.sendCount);
    model.interval = sendListNumber(cells.interval);
    return model;
}

QString payloadDigits(const QString &typed)
{
    static const QRegularExpression other(QStringLiteral("[^0-9A-Fa-f]"));
    QString digits = QString(typed).remove(other).left(DigitsPerByte * MaxClassicLength).toUpper();
    if (digits.size() % DigitsPerByte != 0) {
        digits.insert(digits.size() - 1, QLatin1Char('0'));
    }
    return digits;
}

VCI_CANFD_OBJ toCanFdRecord(const VCI_CAN_OBJ &frame)
{
    VCI_CANFD_OBJ record{};
    record.ID = frame.ID;
    record.ExternFlag = frame.ExternFlag;
    const int length = std::min<int>(frame.DataLen, MaxClassicLength);
    record.DataLen = static_cast<quint8>(length);
    std::copy_n(frame.Data, length, record.Data);
    return record;
}
