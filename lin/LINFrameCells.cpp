#include "lin/LINFrameCells.h"

#include "device/HexText.h"
#include "device/LINFrame.h"

#include <QCoreApplication>

namespace {

/// The context of the texts.
struct Texts
{
    Q_DECLARE_TR_FUNCTIONS(LINFrameModel)
};

/// "12[92]"
QString idText(quint8 id, quint8 pid)
{
    QString text = hexNumber(id, 2);
    text.append(QLatin1Char('['));
    appendHexNumber(text, pid, 2);
    text.append(QLatin1Char(']'));
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

QStringList linColumnTitles()
{
    return {QStringLiteral("No."),
            Texts::tr("System Time"),
            Texts::tr("Direction"),
            QStringLiteral("ID[PID]"),
            Texts::tr("Length"),
            Texts::tr("Data") + QStringLiteral("(Hex)"),
            Texts::tr("Check") + QStringLiteral("(Hex)"),
            Texts::tr("State")};
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
        return hexPairs(frame.data);
    case LINColumn::Check:
        return hexNumber(frame.checksum, 2);
    case LINColumn::State:
        return stateText(state);
    }
    return {};
}
