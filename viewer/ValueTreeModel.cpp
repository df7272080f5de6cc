#include "viewer/ValueTreeModel.h"

#include "viewer/core/FrameColumns.h"

#include <QBrush>
#include <QPalette>

#include <algorithm>
#include <array>
#include <utility>

namespace {

constexpr std::array<const char *, ValueTreeModel::ColumnCount> Titles{
    QT_TRANSLATE_NOOP("ValueTreeModel", "Message, signal"), QT_TRANSLATE_NOOP("ValueTreeModel", "Value"),
    QT_TRANSLATE_NOOP("ValueTreeModel", "Unit"), QT_TRANSLATE_NOOP("ValueTreeModel", "Text"),
    QT_TRANSLATE_NOOP("ValueTreeModel", "Time [s]")};

/// What an index of a message has as its number; that of a signal has its row in the model and 1.
constexpr quintptr OfMessage = 0;

} // namespace

ValueTreeModel::ValueTreeModel(const BusFrameStore &store, QObject *parent)
    : QAbstractItemModel(parent)
    , m_store(store)
{
}

void ValueTreeModel::setSource(std::shared_ptr<const DatabaseSignals> source)
{
    beginResetModel();
    m_source = std::move(source);
    m_rows = {};
    m_messages.clear();
    for (int message = 0; m_source && message < m_source->messageCount(); ++message) {
        if (m_source->isUsed(message)) {
            m_messages.push_back(message);
        }
    }
    std::stable_sort(m_messages.begin(), m_messages.end(), [this](int a, int b) {
        return m_source->message(a).name.compare(m_source->message(b).name, Qt::CaseInsensitive) < 0;
    });
    endResetModel();
}

void ValueTreeModel::setRows(const LastSignals::Rows &rows)
{
    if (rows.source != m_source || !m_source) {
        return;
    }
    m_rows = rows;
    const int count = rowCount();
    for (int row = 0; row < count; ++row) {
        const QModelIndex message = index(row, 0);
        const int signalRows = rowCount(message);
        if (signalRows > 0) {
            emit dataChanged(index(0, 0, message), index(signalRows - 1, ColumnCount - 1, message));
        }
    }
    if (count > 0) {
        emit dataChanged(index(0, 0), index(count - 1, ColumnCount - 1));
    }
}

QModelIndex ValueTreeModel::index(int row, int column, const QModelIndex &parent) const
{
    if (!hasIndex(row, column, parent)) {
        return {};
    }
    return createIndex(row, column, parent.isValid() ? static_cast<quintptr>(parent.row()) + 1 : OfMessage);
}

QModelIndex ValueTreeModel::parent(const QModelIndex &index) const
{
    return index.isValid() && index.internalId() != OfMessage
               ? createIndex(static_cast<int>(index.internalId()) - 1, 0, OfMessage)
               : QModelIndex();
}

int ValueTreeModel::rowCount(const QModelIndex &parent) const
{
    if (!parent.isValid()) {
        return static_cast<int>(m_messages.size());
    }
    return parent.column() == 0 && parent.internalId() == OfMessage
               ? m_source->message(messageOf(parent)).content.size()
               : 0;
}

int ValueTreeModel::columnCount(const QModelIndex & /*parent*/) const
{
    return ColumnCount;
}

QVariant ValueTreeModel::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (orientation != Qt::Horizontal || role != Qt::DisplayRole || section < 0 || section >= ColumnCount) {
        return {};
    }
    return tr(Titles[static_cast<std::size_t>(section)]);
}

int ValueTreeModel::messageOf(const QModelIndex &index) const
{
    if (!index.isValid()) {
        return -1;
    }
    const auto row = index.internalId() == OfMessage ? static_cast<std::size_t>(index.row())
                                                     : static_cast<std::size_t>(index.internalId() - 1);
    return m_messages[row];
}

int ValueTreeModel::signalOf(const QModelIndex &index) const
{
    return index.isValid() && index.internalId() != OfMessage ? m_source->firstSignal(messageOf(index)) + index.row()
                                                              : -1;
}

qint64 ValueTreeModel::rowOf(const QModelIndex &index) const
{
    if (!index.isValid() || !m_rows.source) {
        return -1;
    }
    const int signal = signalOf(index);
    return signal >= 0 ? m_rows.ofSignals[static_cast<std::size_t>(signal)]
                       : m_rows.ofMessages[static_cast<std::size_t>(messageOf(index))];
}

QVariant ValueTreeModel::data(const QModelIndex &index, int role) const
{
    if (!index.isValid()) {
        return {};
    }
    switch (role) {
    case Qt::DisplayRole:
        return text(index);
    case Qt::ToolTipRole:
        return toolTip(index);
    case IsSeenRole:
        return rowOf(index) >= 0;
    case Qt::TextAlignmentRole:
        return static_cast<int>(Qt::AlignVCenter |
                                (index.column() == Time || (index.column() == Value && signalOf(index) >= 0)
                                     ? Qt::AlignRight
                                     : Qt::AlignLeft));
    default:
        return {};
    }
}

QString ValueTreeModel::text(const QModelIndex &index) const
{
    const qint64 row = rowOf(index);
    const int signal = signalOf(index);
    if (index.column() == Time) {
        const std::optional<qint64> since =
            row >= 0 ? timeDistance(m_store.start(), m_store.time(row)) : std::optional<qint64>();
        return since ? durationText(*since) : QString();
    }
    return signal >= 0 ? signalText(signal, index.column(), row) : messageText(messageOf(index), index.column(), row);
}

QString ValueTreeModel::messageText(int message, int column, qint64 row) const
{
    switch (column) {
    case Name:
        return QStringLiteral("%1 (%2)").arg(m_source->message(message).name,
                                             FrameColumns::identifierText(m_source->keys(message).first()));
    case Value:
        return row >= 0 ? FrameColumns::dataText(m_store.frame(row)) : QString();
    default:
        return {};
    }
}

QString ValueTreeModel::signalText(int signal, int column, qint64 row) const
{
    if (column == Name) {
        return m_source->signal(signal).name;
    }
    if (row < 0) {
        return column == Unit ? m_source->signal(signal).unit() : QString();
    }
    const SignalCells cells = signalCells(m_source->signalDecoder(signal), m_store.frame(row).data.data());
    switch (column) {
    case Value:
        return cells.physical.isEmpty() ? cells.raw : cells.physical;
    case Unit:
        return cells.unit;
    case Text:
        return cells.text;
    default:
        return {};
    }
}

QString ValueTreeModel::toolTip(const QModelIndex &index) const
{
    const int message = messageOf(index);
    const int signal = signalOf(index);
    const QString comment = signal >= 0 ? m_source->signal(signal).comment : m_source->message(message).comment;
    const QString file = m_source->partOf(message).name;
    return comment.isEmpty() ? file : file + QLatin1Char('\n') + comment;
}

void ValueTreeFilter::setText(const QString &text)
{
    m_text = text.trimmed();
    invalidateFilter();
}

void ValueTreeFilter::setOnlySeen(bool isOnlySeen)
{
    m_isOnlySeen = isOnlySeen;
    invalidateFilter();
}

bool ValueTreeFilter::hasText(const QModelIndex &index) const
{
    return index.data().toString().contains(m_text, Qt::CaseInsensitive);
}

bool ValueTreeFilter::filterAcceptsRow(int row, const QModelIndex &parent) const
{
    const QModelIndex index = sourceModel()->index(row, 0, parent);
    if (m_isOnlySeen && !index.data(ValueTreeModel::IsSeenRole).toBool()) {
        return false;
    }
    if (m_text.isEmpty() || hasText(index) || (parent.isValid() && hasText(parent))) {
        return true;
    }
    const int children = sourceModel()->rowCount(index);
    for (int child = 0; child < children; ++child) {
        if (hasText(sourceModel()->index(child, 0, index))) {
            return true;
        }
    }
    return false;
}
