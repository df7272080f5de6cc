#include "can/CanFrameInput.h"

#include "widgets/HexEntry.h"

#include <QRegularExpression>

#include <algorithm>
#include <charconv>
#include <limits>

namespace {
constexpr int NumberCharactersMax = 16;

QString withoutBlanks(QString text)
{
    static const QRegularExpression blanks(QStringLiteral("\\s"));
    return text.remove(blanks);
}

/// What both kinds of records have.
template<typename Record>
Record toRecord(const CanFrameInput &input)
{
    constexpr int Capacity = sizeof(Record::Data);
    Record record{};
    record.ID = input.id;
    record.ExternFlag = input.extended ? 1 : 0;
    record.DataLen = static_cast<quint8>(std::min(input.data.size(), Capacity));
    std::copy_n(input.data.cbegin(), record.DataLen, record.Data);
    return record;
}
} // namespace

std::optional<quint32> numberFromHex(const QString &text)
{
    // The conversion alone would take signs and a second "0x".
    static const QRegularExpression pattern(QStringLiteral("\\A(?:0[xX])?([0-9A-Fa-f]+)\\z"));
    const QString typed = withoutBlanks(text).left(NumberCharactersMax);
    bool isNumber = false;
    const quint32 number = pattern.match(typed).captured(1).toUInt(&isNumber, 16);
    return isNumber ? std::optional<quint32>(number) : std::nullopt;
}

QString hexNumberPattern()
{
    return QStringLiteral("(0[xX])?[0-9A-Fa-f]{0,8}");
}

std::optional<quint32> frameIdFromText(const QString &text, bool extended)
{
    const std::optional<quint32> id = numberFromHex(text);
    return id && *id <= frameIdMax(extended) ? id : std::nullopt;
}

QString correctedFrameIdText(const QString &text, bool extended)
{
    const QString digits = withoutBlanks(text);
    const bool isTooHigh = digits.size() > frameIdDigits(extended) || digits.toUInt(nullptr, 16) > frameIdMax(extended);
    return isTooHigh ? hexNumber(frameIdMax(extended), frameIdDigits(extended)) : digits;
}

std::optional<quint32> countFromText(const QString &text)
{
    const QByteArray typed = text.toLatin1();
    quint32 count = 0;
    const auto [end, error] = std::from_chars(typed.cbegin(), typed.cend(), count);
    if (end != typed.cend() || error == std::errc::invalid_argument) {
        return std::nullopt;
    }
    return error == std::errc::result_out_of_range ? std::numeric_limits<quint32>::max() : count;
}

int intFromText(const QString &text, int fallback)
{
    constexpr quint32 max = std::numeric_limits<int>::max();
    const std::optional<quint32> count = countFromText(text);
    return count ? static_cast<int>(std::min(*count, max)) : fallback;
}

QVector<int> payloadLengths(bool isCANFD)
{
    static const QVector<int> lengths{1, 2, 3, 4, 5, 6, 7, 8, 12, 16, 20, 24, 32, 48, 64};
    constexpr int classicCount = 8;
    return isCANFD ? lengths : lengths.mid(0, classicCount);
}

VCI_CAN_OBJ toClassicFrame(const CanFrameInput &input)
{
    auto frame = toRecord<VCI_CAN_OBJ>(input);
    frame.RemoteFlag = input.remote ? 1 : 0;
    return frame;
}

VCI_CANFD_OBJ toFdFrame(const CanFrameInput &input)
{
    auto frame = toRecord<VCI_CANFD_OBJ>(input);
    frame.FDFlag = input.protocol;
    return frame;
}

quint32 incrementedFrameId(quint32 id, bool extended)
{
    return id < frameIdMax(extended) ? id + 1 : id;
}

QByteArray incrementedPayload(QByteArray data)
{
    constexpr char Full = '\xFF';
    auto *const first = std::find_if(data.begin(), data.end(), [](char byte) { return byte != Full; });
    if (first != data.end()) {
        ++*first;
        std::fill(data.begin(), first, '\0');
    }
    return data;
}
