#include "can/CanFrameInput.h"

#include <QRegularExpression>

#include <algorithm>
#include <cstring>
#include <limits>

namespace {
constexpr int StandardIdDigits = 3;
constexpr int ExtendedIdDigits = 8;
constexpr int NumberCharactersMax = 16;

QString withoutBlanks(QString text)
{
    static const QRegularExpression blanks(QStringLiteral("\\s"));
    return text.remove(blanks);
}

quint8 copyPayload(const QByteArray &data, std::uint8_t *target, std::size_t capacity)
{
    const auto length = std::min(static_cast<std::size_t>(data.size()), capacity);
    std::memcpy(target, data.constData(), length);
    return static_cast<quint8>(length);
}
} // namespace

std::optional<quint32> frameIdFromText(const QString &text, bool extended)
{
    bool isNumber = false;
    const quint64 id = withoutBlanks(text).left(NumberCharactersMax).toULongLong(&isNumber, 16);
    if (!isNumber || id > frameIdMax(extended)) {
        return std::nullopt;
    }
    return static_cast<quint32>(id);
}

QString correctedFrameIdText(const QString &text, bool extended)
{
    QString digits = withoutBlanks(text);
    const int digitsMax = extended ? ExtendedIdDigits : StandardIdDigits;
    const quint32 idMax = frameIdMax(extended);
    if (digits.size() > digitsMax || digits.toULongLong(nullptr, 16) > idMax) {
        return QString::number(idMax, 16).toUpper();
    }
    return digits;
}

std::optional<quint32> countFromText(const QString &text)
{
    const bool isNumber = !text.isEmpty() && std::all_of(text.begin(), text.end(), [](QChar character) {
        return character >= QLatin1Char('0') && character <= QLatin1Char('9');
    });
    if (!isNumber) {
        return std::nullopt;
    }
    bool fits = false;
    const quint32 count = text.toUInt(&fits);
    return fits ? count : std::numeric_limits<quint32>::max();
}

QVector<int> payloadLengths(bool isCANFD)
{
    static const QVector<int> lengths{1, 2, 3, 4, 5, 6, 7, 8, 12, 16, 20, 24, 32, 48, 64};
    constexpr int classicCount = 8;
    return isCANFD ? lengths : lengths.mid(0, classicCount);
}

VCI_CAN_OBJ toClassicFrame(const CanFrameInput &input)
{
    VCI_CAN_OBJ frame{};
    frame.ID = input.id;
    frame.RemoteFlag = input.remote ? 1 : 0;
    frame.ExternFlag = input.extended ? 1 : 0;
    frame.DataLen = copyPayload(input.data, frame.Data, sizeof frame.Data);
    return frame;
}

VCI_CANFD_OBJ toFdFrame(const CanFrameInput &input)
{
    VCI_CANFD_OBJ frame{};
    frame.ID = input.id;
    frame.ExternFlag = input.extended ? 1 : 0;
    frame.FDFlag = input.protocol;
    frame.DataLen = copyPayload(input.data, frame.Data, sizeof frame.Data);
    return frame;
}
