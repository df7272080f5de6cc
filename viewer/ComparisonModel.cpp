#include "viewer/ComparisonModel.h"

#include "viewer/ByteDelegate.h"

#include <algorithm>
#include <array>

namespace {

struct ColumnLook
{
    const char *title;
    int characters; ///< of titles in both languages, too
};

constexpr std::array<ColumnLook, ComparisonModel::ColumnCount> Looks{
    {{QT_TRANSLATE_NOOP("ComparisonModel", "Channel"), 9},
     {QT_TRANSLATE_NOOP("ComparisonModel", "ID"), 13},
     {QT_TRANSLATE_NOOP("ComparisonModel", "Name"), 12},
     {QT_TRANSLATE_NOOP("ComparisonModel", "What differs"), 34},
     {QT_TRANSLATE_NOOP("ComparisonModel", "Bytes A"), 36},
     {QT_TRANSLATE_NOOP("ComparisonModel", "Bytes B"), 36},
     {QT_TRANSLATE_NOOP("ComparisonModel", "Count A"), 11},
     {QT_TRANSLATE_NOOP("ComparisonModel", "Count B"), 11},
     {QT_TRANSLATE_NOOP("ComparisonModel", "B - A"), 11},
     {QT_TRANSLATE_NOOP("ComparisonModel", "Rate A [1/s]"), 13},
     {QT_TRANSLATE_NOOP("ComparisonModel", "Rate B [1/s]"), 13},
     {QT_TRANSLATE_NOOP("ComparisonModel", "B - A [1/s]"), 13},
     {QT_TRANSLATE_NOOP("ComparisonModel", "Period A [ms]"), 14},
     {QT_TRANSLATE_NOOP("ComparisonModel", "Period B [ms]"), 14},
     {QT_TRANSLATE_NOOP("ComparisonModel", "B - A [ms]"), 14},
     {QT_TRANSLATE_NOOP("ComparisonModel", "Length A"), 10},
     {QT_TRANSLATE_NOOP("ComparisonModel", "Length B"), 10}}};

constexpr int MaxDifferences = 6;

QString hex(unsigned value)
{
    return QStringLiteral("%1").arg(value, 2, 16, QLatin1Char('0')).toUpper();
}

bool isOneBit(unsigned bits)
{
    return (bits & (bits - 1)) == 0;
}

int numberOf(unsigned bit)
{
    int number = 0;
    while ((bit >>= 1U) != 0) {
        ++number;
    }
    return number;
}

/// "byte 5 bit 0", "byte 5 & F0", and all bits of a byte that is there as a whole: "byte 5".
QString placeText(int byte, unsigned bits)
{
    const QString place = ComparisonModel::tr("byte %1").arg(byte);
    if (isOneBit(bits)) {
        return ComparisonModel::tr("%1 bit %2").arg(place).arg(numberOf(bits));
    }
    return bits == 0xFF ? place : place + QStringLiteral(" & ") + hex(bits);
}

QString otherText(const ComparedIdentifier &identifier, int byte, unsigned bits)
{
    const auto at = static_cast<std::size_t>(byte);
    const unsigned here = identifier.bytesHere.everSet[at];
    const unsigned there = identifier.bytesThere.everSet[at];
    const bool isWhole = identifier.bytesHere.isConstant(byte) && identifier.bytesThere.isConstant(byte);
    const unsigned shown = isOneBit(bits) ? bits : isWhole ? 0xFFU : bits;
    const QString values = isOneBit(bits) ? QStringLiteral("%1 → %2").arg((here & bits) != 0).arg((there & bits) != 0)
                                          : QStringLiteral("%1 → %2").arg(hex(here & shown), hex(there & shown));
    return placeText(byte, shown) + QStringLiteral(": ") + values;
}

/// Empty where there is none.
QString lengthText(const IdentifierStatistics &side)
{
    if (side.count == 0) {
        return {};
    }
    return side.leastLength == side.greatestLength
               ? QString::number(side.leastLength)
               : QStringLiteral("%1-%2").arg(side.leastLength).arg(side.greatestLength);
}

QString numberText(double value, bool isKnown, bool hasSign = false)
{
    const QString text = QString::number(value, 'f', 3);
    return !isKnown ? QString() : hasSign && value > 0 ? QLatin1Char('+') + text : text;
}

} // namespace

int ComparisonModel::widthInCharacters(int column)
{
    return Looks[static_cast<std::size_t>(column)].characters;
}

int ComparisonModel::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() || !m_comparison ? 0 : static_cast<int>(m_comparison->identifiers.size());
}

int ComparisonModel::columnCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : ColumnCount;
}

QVariant ComparisonModel::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (orientation != Qt::Horizontal || role != Qt::DisplayRole || section < 0 || section >= ColumnCount) {
        return {};
    }
    return tr(Looks[static_cast<std::size_t>(section)].title);
}

void ComparisonModel::setComparison(std::shared_ptr<const Comparison> comparison)
{
    const auto isSame = [](const ComparedIdentifier &a, const ComparedIdentifier &b) {
        return a.difference.key == b.difference.key && a.difference.channel == b.difference.channel;
    };
    const bool staysAsItWas = m_comparison && comparison &&
                              std::equal(m_comparison->identifiers.begin(), m_comparison->identifiers.end(),
                                         comparison->identifiers.begin(), comparison->identifiers.end(), isSame);
    if (staysAsItWas) {
        m_comparison = std::move(comparison);
        if (rowCount() > 0) {
            emit dataChanged(index(0, 0), index(rowCount() - 1, ColumnCount - 1));
        }
        return;
    }
    beginResetModel();
    m_comparison = std::move(comparison);
    endResetModel();
}

QString ComparisonModel::differenceText(const ComparedIdentifier &identifier)
{
    using What = IdentifierDifference;
    const quint32 what = identifier.difference.what;
    if ((what & (What::OnlyHere | What::OnlyThere)) != 0) {
        return (what & What::OnlyHere) != 0 ? tr("only in A") : tr("only in B");
    }
    QStringList other;
    QStringList movesB;
    QStringList movesA;
    for (int byte = 0; byte < BusFrame::MaxLength; ++byte) {
        const BitDifference bits = compareByte(identifier.bytesHere, identifier.bytesThere, byte);
        if (bits.other != 0) {
            other.append(otherText(identifier, byte, bits.other));
        }
        if (bits.movesThere != 0) {
            movesB.append(tr("%1 moves in B").arg(placeText(byte, bits.movesThere)));
        }
        if (bits.movesHere != 0) {
            movesA.append(tr("%1 moves in A").arg(placeText(byte, bits.movesHere)));
        }
    }
    QStringList all = other + movesB + movesA;
    for (const auto &[kind, word] :
         {std::make_pair(What::Length, tr("length")), {What::Rate, tr("rate")}, {What::Period, tr("period")}}) {
        if ((what & kind) != 0) {
            all.append(word);
        }
    }
    const bool isLong = all.size() > MaxDifferences;
    return all.mid(0, MaxDifferences).join(QStringLiteral("; ")) + (isLong ? QStringLiteral("; …") : QString());
}

/// "12" for a byte that is always the same, otherwise its least and greatest value: "00-3F".
QString ComparisonModel::bytesText(const ByteValues &bytes)
{
    QStringList texts;
    for (int byte = 0; byte < BusFrame::MaxLength && bytes.has(byte); ++byte) {
        const auto at = static_cast<std::size_t>(byte);
        texts.append(bytes.isConstant(byte) ? hex(bytes.least[at])
                                            : hex(bytes.least[at]) + QLatin1Char('-') + hex(bytes.greatest[at]));
    }
    return texts.join(QLatin1Char(' '));
}

QByteArray ComparisonModel::marks(const ComparedIdentifier &identifier, bool isB)
{
    QByteArray found;
    const ByteValues &bytes = isB ? identifier.bytesThere : identifier.bytesHere;
    for (int byte = 0; byte < BusFrame::MaxLength && bytes.has(byte); ++byte) {
        const BitDifference bits = compareByte(identifier.bytesHere, identifier.bytesThere, byte);
        found.append(bits.other != 0        ? ByteDelegate::Other
                     : bits.movesThere != 0 ? ByteDelegate::Changed
                     : bits.movesHere != 0  ? ByteDelegate::MovesHere
                                            : ByteDelegate::None);
    }
    return found;
}

QVariant ComparisonModel::data(const QModelIndex &index, int role) const
{
    if (!index.isValid()) {
        return {};
    }
    const auto column = static_cast<Column>(index.column());
    switch (role) {
    case Qt::DisplayRole:
        return text(index.row(), column);
    case Qt::ToolTipRole:
        return column == Difference || column == BytesA || column == BytesB ? text(index.row(), column) : QVariant();
    case SortRole:
        return sortValue(index.row(), column);
    case DiffersRole:
        return at(index.row()).difference.what != 0 ? QStringLiteral("1") : QStringLiteral("0");
    case ByteDelegate::MarksRole:
        return column == BytesA || column == BytesB ? marks(at(index.row()), column == BytesB) : QByteArray();
    case Qt::TextAlignmentRole:
        return static_cast<int>(Qt::AlignVCenter |
                                (column == Name || column == Difference || column == BytesA || column == BytesB
                                     ? Qt::AlignLeft
                                     : Qt::AlignRight));
    default:
        return {};
    }
}

QString ComparisonModel::text(int row, Column column) const
{
    const ComparedIdentifier &identifier = at(row);
    const IdentifierStatistics &a = identifier.here;
    const IdentifierStatistics &b = identifier.there;
    const bool isInBoth = a.count > 0 && b.count > 0;
    const bool hasPeriods = a.periodCount > 0 && b.periodCount > 0;
    switch (column) {
    case Channel:
        return QString::number(identifier.difference.channel + 1);
    case Identifier:
        return (identifier.difference.key & ErrorKey) != 0 ? tr("error frames")
                                                           : FrameColumns::identifierText(identifier.difference.key);
    case Name:
        return m_names.of(identifier.difference.key, identifier.difference.channel);
    case Difference:
        return differenceText(identifier);
    case BytesA:
        return bytesText(identifier.bytesHere);
    case BytesB:
        return bytesText(identifier.bytesThere);
    case CountA:
        return QString::number(a.count);
    case CountB:
        return QString::number(b.count);
    case CountChange:
        return (b.count > a.count ? QStringLiteral("+") : QString()) + QString::number(b.count - a.count);
    case RateA:
        return numberText(a.rate(), a.count > 0);
    case RateB:
        return numberText(b.rate(), b.count > 0);
    case RateChange:
        return numberText(b.rate() - a.rate(), isInBoth, true);
    case PeriodA:
        return numberText(a.meanPeriod / 1e6, a.periodCount > 0);
    case PeriodB:
        return numberText(b.meanPeriod / 1e6, b.periodCount > 0);
    case PeriodChange:
        return numberText((b.meanPeriod - a.meanPeriod) / 1e6, hasPeriods, true);
    case LengthA:
        return lengthText(a);
    case LengthB:
        return lengthText(b);
    }
    return {};
}

QVariant ComparisonModel::sortValue(int row, Column column) const
{
    const ComparedIdentifier &identifier = at(row);
    const IdentifierStatistics &a = identifier.here;
    const IdentifierStatistics &b = identifier.there;
    switch (column) {
    case Channel:
        return identifier.difference.channel;
    case Identifier:
        return identifier.difference.key;
    case Difference:
        return identifier.rank;
    case CountA:
        return a.count;
    case CountB:
        return b.count;
    case CountChange:
        return b.count - a.count;
    case RateA:
        return a.rate();
    case RateB:
        return b.rate();
    case RateChange:
        return b.rate() - a.rate();
    case PeriodA:
        return a.meanPeriod;
    case PeriodB:
        return b.meanPeriod;
    case PeriodChange:
        return b.meanPeriod - a.meanPeriod;
    case LengthA:
        return a.greatestLength;
    case LengthB:
        return b.greatestLength;
    case Name:
    case BytesA:
    case BytesB:
        break;
    }
    return text(row, column);
}
