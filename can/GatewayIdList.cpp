#include "can/GatewayIdList.h"

#include "device/AdapterRecords.h"
#include "device/FrameIdentifier.h"
#include "widgets/HexEntry.h"

#include <QRegularExpression>

#include <algorithm>

namespace {
constexpr quint32 TypeBit = 2;

bool isInRange(quint32 id, quint8 type)
{
    if (type == GatewayStandard) {
        return id <= MaxGatewayStandardId;
    }
    return type != GatewayExtend || id <= MaxExtendedFrameId;
}
} // namespace

quint32 gatewayWord(quint32 id, quint8 type)
{
    return id * 8 + quint32{type} * 2 + 1;
}

quint32 gatewayId(quint32 word)
{
    return word >> 3U;
}

bool isGatewayExtend(quint32 word)
{
    return (word & TypeBit) != 0;
}

std::optional<quint32> gatewayIdFromText(const QString &text, quint8 type)
{
    static const QRegularExpression blanks(QStringLiteral("\\s"));
    static const QRegularExpression digits(QStringLiteral("\\A[0-9a-fA-F]{1,8}\\z"));
    const QString number = QString(text).remove(blanks);
    if (!digits.match(number).hasMatch()) {
        return std::nullopt;
    }
    const quint32 id = number.toUInt(nullptr, 16);
    return isInRange(id, type) ? std::optional(id) : std::nullopt;
}

QString gatewayIdText(quint32 word)
{
    return QStringLiteral("0x") + hexNumber(gatewayId(word), 8);
}

QString gatewayRowNumber(int number)
{
    return QStringLiteral("%1").arg(number, 2, 10, QLatin1Char('0'));
}

GatewayIdList::GatewayIdList(const QSet<quint32> &words)
    : m_words(words.cbegin(), words.cend())
{
    std::sort(m_words.begin(), m_words.end());
}

GatewayIdList::AddResult GatewayIdList::add(quint32 word)
{
    if (m_words.size() >= static_cast<int>(AdapterGatewayMaxIds)) {
        return AddResult::Full;
    }
    if (m_words.contains(word)) {
        return AddResult::Exists;
    }
    m_words.append(word);
    return AddResult::Added;
}
