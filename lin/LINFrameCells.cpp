#include "lin/LINFrameCells.h"

#include "device/LINFrame.h"

#include <QCoreApplication>

namespace {

/// The context of the texts.
struct Texts
{
    Q_DECLARE_TR_FUNCTIONS(LINFrameModel)
};

QString hexByte(quint32 byte)
{
    return QStringLiteral("%1").arg(byte & 0xFFU, 2, 16, QLatin1Char('0')).toUpper();
}

/// "01 A2 ", with a blank at the end.
QString dataText(const QByteArray &data)
{
    QString text;
    text.reserve(data.size() * 3);
    for (const char byte : data) {
        constexpr char Digits[] = "0123456789ABCDEF";
        text.append(QLatin1Char(Digits[static_cast<quint8>(byte) >> 4U]));
        text.append(QLatin1Char(Digits[static_cast<quint8>(byte) & 15U]));
        text.append(QLatin1Char(' '));
    }
    return text;
}

QString stateText(LINFrameState state)
{
    switch (state) {
    case LINFrameState::Classic:
        return QStringLiteral("V1");
    case LINFrameState::Enhanced:
        return QStringLiteral("V2");
    case LINFrameState::WrongClassic:
        return Texts::tr("Error checksum") + QStringLiteral("(V1)");
    case LINFrameState::WrongEnhanced:
        return Texts::tr("Error checksum") + QStringLiteral("(V2)");
    case LINFrameState::Wrong:
        return Texts::tr("Error state");
    }
    return QString();
}

} // namespace

LINFrameState linFrameState(const CTableViewLIN::DataObject &frame, quint8 checksumType)
{
    const bool isEnhanced = checksumType == LINChecksumEnhanced;
    switch (checkChecksum(frame.ID, static_cast<quint8>(frame.checksum), frame.data)) {
    case LINChecksumClassic:
        return isEnhanced ? LINFrameState::WrongClassic : LINFrameState::Classic;
    case LINChecksumEnhanced:
        return isEnhanced ? LINFrameState::Enhanced : LINFrameState::WrongEnhanced;
    }
    return LINFrameState::Wrong;
}

QString linColumnTitle(LINColumn column)
{
    switch (column) {
    case LINColumn::Number:
        return QStringLiteral("No.");
    case LINColumn::SystemTime:
        return Texts::tr("System Time");
    case LINColumn::Direction:
        return Texts::tr("Direction");
    case LINColumn::Id:
        return QStringLiteral("ID[PID]");
    case LINColumn::Length:
        return Texts::tr("Length");
    case LINColumn::Data:
        return Texts::tr("Data") + QStringLiteral("(Hex)");
    case LINColumn::Check:
        return Texts::tr("Check") + QStringLiteral("(Hex)");
    case LINColumn::State:
        return Texts::tr("State");
    }
    return QString();
}

QString linCell(const CTableViewLIN::DataObject &frame, int number, LINFrameState state, LINColumn column)
{
    switch (column) {
    case LINColumn::Number:
        return QString::number(number);
    case LINColumn::SystemTime:
        return frame.time;
    case LINColumn::Direction:
        return frame.direction == CTableViewLIN::DataObject::Received ? Texts::tr("Revice") : Texts::tr("Send");
    case LINColumn::Id:
        return hexByte(frame.ID) + QLatin1Char('[') + hexByte(frame.PID) + QLatin1Char(']');
    case LINColumn::Length:
        return QString::number(frame.data.size());
    case LINColumn::Data:
        return dataText(frame.data);
    case LINColumn::Check:
        return hexByte(frame.checksum);
    case LINColumn::State:
        return stateText(state);
    }
    return QString();
}
