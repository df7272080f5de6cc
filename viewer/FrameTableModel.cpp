#include "viewer/FrameTableModel.h"

#include <algorithm>
#include <limits>
#include <utility>

namespace {

int tableRows(qint64 rows)
{
    return static_cast<int>(std::min<qint64>(rows, std::numeric_limits<int>::max() - 1));
}

} // namespace

FrameTableModel::FrameTableModel(OpenCapture &capture, QObject *parent)
    : QAbstractTableModel(parent)
    , m_capture(capture)
    , m_rows(tableRows(capture.rowCount()))
{
    connect(&capture, &OpenCapture::sig_rowsReset, this, &FrameTableModel::slot_reset);
    connect(&capture, &OpenCapture::sig_rowsAdded, this, &FrameTableModel::slot_added);
    connect(&capture, &OpenCapture::sig_signalSourceChanged, this, &FrameTableModel::slot_sourceChanged);
    slot_sourceChanged();
}

int FrameTableModel::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : m_rows;
}

int FrameTableModel::columnCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : FrameColumnCount;
}

QVariant FrameTableModel::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (orientation != Qt::Horizontal || section < 0 || section >= FrameColumnCount) {
        return {};
    }
    return role == Qt::DisplayRole ? FrameColumns::title(static_cast<FrameColumn>(section)) : QVariant();
}

QVariant FrameTableModel::data(const QModelIndex &index, int role) const
{
    if (!index.isValid() || role != Qt::DisplayRole) {
        return {};
    }
    return text(index.row(), static_cast<FrameColumn>(index.column()));
}

QString FrameTableModel::text(int place, FrameColumn column) const
{
    if (place < 0 || place >= m_rows) {
        return {};
    }
    const qint64 before = column == FrameColumn::SinceShown && place > 0 ? m_capture.rowAt(place - 1) : -1;
    return textOfRow(m_capture.rowAt(place), before, column);
}

QString FrameTableModel::textOfRow(qint64 row, qint64 shownBefore, FrameColumn column) const
{
    if (!FrameColumns::isTime(column)) {
        return FrameColumns::text(column, row, m_capture.store().frame(row), m_names);
    }
    TimeReferences references;
    references.mark = m_capture.mark();
    references.shown = shownBefore;
    if (column == FrameColumn::SinceIdentifier) {
        references.identifier = m_capture.overview().previousRow(row).value_or(-1);
    }
    return FrameColumns::text(column, m_capture.store(), m_capture.info(), row, references, m_names);
}

QString FrameTableModel::toolTip(int place, FrameColumn column) const
{
    if (place < 0 || place >= m_rows) {
        return {};
    }
    const qint64 row = m_capture.rowAt(place);
    const QString lines =
        column == FrameColumn::Data ? FrameColumns::dataLines(m_capture.store().frame(row)) : QString();
    const QString note = m_capture.bookmarks().note(row);
    return (lines.isEmpty() ? text(place, column).toHtmlEscaped()
                            : QStringLiteral("<pre>%1</pre>").arg(lines.toHtmlEscaped())) +
           (note.isEmpty() ? QString() : QStringLiteral("<p>%1</p>").arg(note.toHtmlEscaped()));
}

const ColorRule *FrameTableModel::rule(int place) const
{
    return place >= 0 && place < m_rows ? m_matcher.matching(m_capture.store(), m_capture.rowAt(place)) : nullptr;
}

void FrameTableModel::setRules(QVector<ColorRule> rules)
{
    m_rules = std::move(rules);
    m_matcher = ColorMatcher(m_rules, m_capture.signalSource());
    refresh();
}

QString FrameTableModel::sameCell(int place, FrameColumn column) const
{
    if (place < 0 || place >= m_rows) {
        return {};
    }
    return FrameColumns::sameCell(column, m_capture.store(), m_capture.rowAt(place), m_names);
}

void FrameTableModel::setNames(const FrameColumns::Names &names)
{
    m_names = names;
    refresh();
}

void FrameTableModel::refresh()
{
    if (m_rows > 0) {
        emit dataChanged(index(0, 0), index(m_rows - 1, FrameColumnCount - 1));
    }
}

void FrameTableModel::slot_reset()
{
    beginResetModel();
    m_rows = tableRows(m_capture.rowCount());
    endResetModel();
}

void FrameTableModel::slot_added(qint64 /*before*/)
{
    const int rows = tableRows(m_capture.rowCount());
    if (rows > m_rows) {
        beginInsertRows({}, m_rows, rows - 1);
        m_rows = rows;
        endInsertRows();
    }
}

void FrameTableModel::slot_sourceChanged()
{
    FrameColumns::Names names;
    if (const auto &source = m_capture.signalSource()) {
        const QVector<SignalSource::Message> messages = source->messages();
        for (const SignalSource::Message &message : messages) {
            names.insert(message.key, message.name);
        }
    }
    m_matcher = ColorMatcher(m_rules, m_capture.signalSource());
    setNames(names);
}
