#include "lin/LINFrameCells.h"

#include "device/LINFrame.h"

#include <QCoreApplication>

namespace {

/// The context of the texts.
struct Texts
{
    Q_DECLARE_TR_FUNCTIONS(LINFrameModel)
};

void appendHex(QString &text, quint32 byte)
{
    constexpr char Digits[] = "0123456789ABCDEF";
    text.append(QLatin1Char(Digits[byte >> 4U & 15U]));
    text.append(QLatin1Char(Digits[byte & 15U]));
}

/// "12[92]"
QString idText(quint8 id, quint8 pid)
{
    QString text;
    appendHex(text, id);
    text.append(QLatin1Char('['));
    appendHex(text, pid);
    text.append(QLatin1Char(']'));
    return text;
}

/// "01 A2 ", with a blank at the end.
QString dataText(const QByteArray &data)
{
    QString text;
    text.reserve(data.size() * 3);
    for (const char byte : data) {
        appendHex(text, static_cast<quint8>(byte));
        text.append(QLatin1Char(' '));
    }
    return text;
}

QString checkText(quint32 checksum)
{
    QString text;
    appendHex(text, checksum);
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
    return {};
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
    return {};
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
        return idText(frame.ID, frame.PID);
    case LINColumn::Length:
        return QString::number(frame.data.size());
    case LINColumn::Data:
        return dataText(frame.data);
    case LINColumn::Check:
        return checkText(frame.checksum);
    case LINColumn::State:
        return stateText(state);
    }
    return {};
}
