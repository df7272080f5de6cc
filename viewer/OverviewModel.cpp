#include "viewer/OverviewModel.h"

#include "viewer/ByteDelegate.h"

#include <algorithm>
#include <array>

namespace {

constexpr std::array<const char *, OverviewModel::ColumnCount> Titles{
    QT_TRANSLATE_NOOP("OverviewModel", "Channel"),
    QT_TRANSLATE_NOOP("OverviewModel", "ID"),
    QT_TRANSLATE_NOOP("OverviewModel", "Name"),
    QT_TRANSLATE_NOOP("OverviewModel", "Count"),
    QT_TRANSLATE_NOOP("OverviewModel", "Rate [1/s]"),
    QT_TRANSLATE_NOOP("OverviewModel", "Period [ms]"),
    QT_TRANSLATE_NOOP("OverviewModel", "Least [ms]"),
    QT_TRANSLATE_NOOP("OverviewModel", "Greatest [ms]"),
    QT_TRANSLATE_NOOP("OverviewModel", "Deviation [ms]"),
    QT_TRANSLATE_NOOP("OverviewModel", "Length"),
    QT_TRANSLATE_NOOP("OverviewModel", "First [s]"),
    QT_TRANSLATE_NOOP("OverviewModel", "Last [s]"),
    QT_TRANSLATE_NOOP("OverviewModel", "Last data, [changed]")};

/// In characters, of titles in both languages, too.
constexpr std::array<int, OverviewModel::ColumnCount> Widths{9, 11, 16, 11, 12, 13, 12, 15, 16, 9, 15, 15, 40};

QString millisecondsText(double nanoseconds, bool isKnown)
{
    return isKnown ? QString::number(nanoseconds / 1e6, 'f', 3) : QString();
}

} // namespace

OverviewModel::OverviewModel(OpenCapture &capture, QObject *parent)
    : QAbstractTableModel(parent)
    , m_capture(capture)
{
    connect(&capture, &OpenCapture::sig_signalSourceChanged, this, [this] {
        m_names = FrameNames(m_capture.signalSource().get());
        update();
    });
}

int OverviewModel::widthInCharacters(int column)
{
    return Widths[static_cast<std::size_t>(column)];
}

int OverviewModel::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : static_cast<int>(m_identifiers.size());
}

int OverviewModel::columnCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : ColumnCount;
}

QVariant OverviewModel::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (orientation != Qt::Horizontal || role != Qt::DisplayRole || section < 0 || section >= ColumnCount) {
        return {};
    }
    return tr(Titles[static_cast<std::size_t>(section)]);
}

QVariant OverviewModel::data(const QModelIndex &index, int role) const
{
    if (!index.isValid()) {
        return {};
    }
    const auto column = static_cast<Column>(index.column());
    switch (role) {
    case Qt::DisplayRole:
        return text(index.row(), column);
    case SortRole:
        return sortValue(index.row(), column);
    case Qt::TextAlignmentRole:
        return static_cast<int>(Qt::AlignVCenter | (column == Name || column == Data ? Qt::AlignLeft : Qt::AlignRight));
    case ByteDelegate::MarksRole:
        return column == Data ? marks(index.row()) : QByteArray();
    default:
        return {};
    }
}

QByteArray OverviewModel::marks(int row) const
{
    QByteArray found;
    const QStringList bytes = dataText(row).split(QLatin1Char(' '), Qt::SkipEmptyParts);
    for (const QString &byte : bytes) {
        found.append(byte.startsWith(QLatin1Char('[')) ? ByteDelegate::Changed : ByteDelegate::None);
    }
    return found;
}

/// The bytes that the frame before had otherwise are in brackets.
QString OverviewModel::dataText(int row) const
{
    const auto at = static_cast<std::size_t>(row);
    if (at >= m_lastRows.size() || m_lastRows[at].last < 0) {
        return {};
    }
    const BusFrame frame = m_capture.store().frame(m_lastRows[at].last);
    const quint64 changed =
        m_lastRows[at].previous >= 0 ? differentBytes(frame, m_capture.store().frame(m_lastRows[at].previous)) : 0;
    QStringList bytes = FrameColumns::dataText(frame).split(QLatin1Char(' '), Qt::SkipEmptyParts);
    for (int i = 0; i < bytes.size(); ++i) {
        if ((changed >> static_cast<unsigned>(i) & 1U) != 0) {
            bytes[i] = QLatin1Char('[') + bytes[i] + QLatin1Char(']');
        }
    }
    return bytes.join(QLatin1Char(' '));
}

QString OverviewModel::text(int row, Column column) const
{
    const IdentifierStatistics &identifier = at(row);
    const bool hasPeriods = identifier.periodCount > 0;
    const auto sinceStart = [this](qint64 time) {
        const std::optional<qint64> since = timeDistance(m_capture.store().start(), time);
        return since ? durationText(*since) : QString();
    };
    switch (column) {
    case Channel:
        return QString::number(identifier.channel + 1);
    case Identifier:
        return (identifier.key & ErrorKey) != 0 ? tr("Error") : FrameColumns::identifierText(identifier.key);
    case Name:
        return m_names.of(identifier.key, identifier.channel);
    case Count:
        return QString::number(identifier.count);
    case Rate:
        return QString::number(identifier.rate(), 'f', 2);
    case Mean:
        return millisecondsText(identifier.meanPeriod, hasPeriods);
    case Least:
        return millisecondsText(static_cast<double>(identifier.leastPeriod), hasPeriods);
    case Greatest:
        return millisecondsText(static_cast<double>(identifier.greatestPeriod), hasPeriods);
    case Deviation:
        return millisecondsText(identifier.periodDeviation(), identifier.periodCount > 1);
    case Length:
        return identifier.leastLength == identifier.greatestLength
                   ? QString::number(identifier.leastLength)
                   : QStringLiteral("%1-%2").arg(identifier.leastLength).arg(identifier.greatestLength);
    case First:
        return sinceStart(identifier.firstTime);
    case Last:
        return sinceStart(identifier.lastTime);
    case Data:
        return dataText(row);
    }
    return {};
}

QVariant OverviewModel::sortValue(int row, Column column) const
{
    const IdentifierStatistics &identifier = at(row);
    switch (column) {
    case Channel:
        return identifier.channel;
    case Identifier:
        return identifier.key;
    case Count:
        return identifier.count;
    case Rate:
        return identifier.rate();
    case Mean:
        return identifier.meanPeriod;
    case Least:
        return identifier.leastPeriod;
    case Greatest:
        return identifier.greatestPeriod;
    case Deviation:
        return identifier.periodDeviation();
    case Length:
        return identifier.greatestLength;
    case First:
        return identifier.firstTime;
    case Last:
        return identifier.lastTime;
    case Name:
    case Data:
        break;
    }
    return text(row, column);
}

QString OverviewModel::filterOf(int row) const
{
    return QStringLiteral("%1 and channel == %2")
        .arg(FrameColumns::identifierFilter(at(row).key))
        .arg(at(row).channel + 1);
}

void OverviewModel::setRow(qint64 row)
{
    m_row = row;
    update();
}

void OverviewModel::update()
{
    std::vector<IdentifierStatistics> identifiers = m_capture.overview().statistics();
    const auto before = static_cast<int>(m_identifiers.size());
    const auto now = static_cast<int>(identifiers.size());
    if (now > before) {
        beginInsertRows({}, before, now - 1);
    }
    m_identifiers = std::move(identifiers);
    m_lastRows =
        m_capture.overview().lastRows(m_row >= 0 ? m_row : std::max<qint64>(0, m_capture.overview().covered() - 1));
    if (now > before) {
        endInsertRows();
    }
    if (before > 0) {
        emit dataChanged(index(0, 0), index(before - 1, ColumnCount - 1));
    }
}
