#include "lin/LINFrameCells.h"

#include "device/LINFrame.h"
#include "device/LINWords.h"
#include "widgets/HexEntry.h"

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
    QString text;
    text.reserve(6);
    appendHexNumber(text, id, 2);
    text.append(QLatin1Char('['));
    appendHexNumber(text, pid, 2);
    text.append(QLatin1Char(']'));
    return text;
}

QString stateText(const CTableViewLIN::DataObject &frame, quint8 checksumType)
{
    const int matched = checkChecksum(frame.ID, static_cast<quint8>(frame.checksum), frame.data);
    if (matched == LINChecksumNone) {
        return Texts::tr(LINWords::Wrong.english);
    }
    const QString version = matched == LINChecksumEnhanced ? QStringLiteral("V2") : QStringLiteral("V1");
    const bool isAsSet = (matched == LINChecksumEnhanced) == (checksumType == LINChecksumEnhanced);
    return isAsSet ? version : QStringLiteral("%1(%2)").arg(Texts::tr(LINWords::WrongChecksum.english), version);
}

} // namespace

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

QString linCell(const CTableViewLIN::DataObject &frame, int number, quint8 checksumType, LINColumn column)
{
    switch (column) {
    case LINColumn::Number:
        return QString::number(number);
    case LINColumn::SystemTime:
        return frame.time;
    case LINColumn::Direction:
        return frame.direction == CTableViewLIN::DataObject::Received ? Texts::tr(LINWords::Received.english)
                                                                      : Texts::tr(LINWords::Send.english);
    case LINColumn::Id:
        return idText(frame.ID, frame.PID);
    case LINColumn::Length:
        return QString::number(frame.data.size());
    case LINColumn::Data:
        return hexPairs(frame.data);
    case LINColumn::Check:
        return hexNumber(frame.checksum, 2);
    case LINColumn::State:
        return stateText(frame, checksumType);
    }
    return {};
}
