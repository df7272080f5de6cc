#include "viewer/RowCopier.h"

#include <QApplication>
#include <QClipboard>
#include <QElapsedTimer>

#include <algorithm>
#include <utility>

namespace {

constexpr int SliceMs = 8;

QString csvCell(QString text)
{
    if (text.contains(QLatin1Char(',')) || text.contains(QLatin1Char('"')) || text.contains(QLatin1Char('\n'))) {
        text = QLatin1Char('"') + text.replace(QLatin1Char('"'), QStringLiteral("\"\"")) + QLatin1Char('"');
    }
    return text;
}

} // namespace

RowCopier::RowCopier(FrameTableModel &model, QObject *parent)
    : QObject(parent)
    , m_model(model)
{
    connect(&m_timer, &QTimer::timeout, this, &RowCopier::slot_slice);
}

void RowCopier::start(int first, int last, QVector<FrameColumn> columns, bool isCsv)
{
    const OpenCapture &capture = m_model.capture();
    m_columns = std::move(columns);
    m_isCsv = isCsv;
    m_isCut = last - first >= MaxRows;
    m_rowBefore = first > 0 ? capture.rowAt(first - 1) : -1;
    m_next = 0;
    m_rows.clear();
    for (int place = first; place <= std::min(last, first + MaxRows - 1); ++place) {
        m_rows.push_back(capture.rowAt(place));
    }
    m_text.clear();
    QStringList titles;
    for (const FrameColumn column : qAsConst(m_columns)) {
        titles.append(FrameColumns::title(column));
    }
    addLine(titles);
    m_timer.start(0);
    slot_slice();
}

void RowCopier::addLine(const QStringList &cells)
{
    for (int i = 0; i < cells.size(); ++i) {
        m_text += i == 0 ? QString() : QString(QLatin1Char(m_isCsv ? ',' : '\t'));
        m_text += m_isCsv ? csvCell(cells.at(i)) : cells.at(i);
    }
    m_text += QLatin1Char('\n');
}

void RowCopier::slot_slice()
{
    QElapsedTimer clock;
    clock.start();
    for (; m_next < m_rows.size() && clock.elapsed() < SliceMs; ++m_next) {
        QStringList cells;
        for (const FrameColumn column : qAsConst(m_columns)) {
            cells.append(m_model.textOfRow(m_rows[m_next], m_rowBefore, column));
        }
        addLine(cells);
        m_rowBefore = m_rows[m_next];
    }
    if (m_next < m_rows.size()) {
        return;
    }
    m_timer.stop();
    QApplication::clipboard()->setText(m_text);
    m_text.clear();
    emit sig_copied(static_cast<int>(m_rows.size()), m_isCut);
}
