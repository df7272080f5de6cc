// The columns of FrameTableView.

#include "viewer/FrameTableView.h"

#include <QHeaderView>
#include <QMenu>

#include <algorithm>

ColumnLayout FrameTableView::columnLayout() const
{
    std::vector<ColumnLayout::Column> columns;
    for (int visual = 0; visual < FrameColumnCount; ++visual) {
        const int column = m_header->logicalIndex(visual);
        const double width = double(m_widths[static_cast<std::size_t>(column)] - 2 * Padding) / digitWidth();
        columns.push_back({static_cast<FrameColumn>(column), width, !m_header->isSectionHidden(column)});
    }
    return ColumnLayout(columns);
}

void FrameTableView::setColumnLayout(const ColumnLayout &layout)
{
    m_isLayingOut = true;
    int visual = 0;
    for (const ColumnLayout::Column &column : layout.columns()) {
        const int logical = static_cast<int>(column.column);
        const int title = QFontMetrics(m_header->font()).horizontalAdvance(FrameColumns::title(column.column));
        m_header->moveSection(m_header->visualIndex(logical), visual++);
        m_header->setSectionHidden(logical, false);
        m_header->resizeSection(logical,
                                std::max(qRound(column.width * digitWidth()), title + 3 * Padding) + 2 * Padding);
        const bool isShown = column.column == FrameColumn::SinceMark ? m_model.capture().mark() >= 0 : column.isShown;
        m_header->setSectionHidden(logical, !isShown);
    }
    m_isLayingOut = false;
    arrange();
}

void FrameTableView::slot_sectionResized(int column, int /*before*/, int width)
{
    if (width > 0) { // hidden ones have none
        m_widths[static_cast<std::size_t>(column)] = width;
    }
    slot_sectionChanged();
}

void FrameTableView::slot_sectionChanged()
{
    if (!m_isLayingOut) {
        arrange();
        emit sig_columnsChanged();
    }
}

/// Makes the column of data as wide as the longest data on screen; it never gets narrower by itself.
void FrameTableView::fitData(int last)
{
    constexpr auto Column = static_cast<int>(FrameColumn::Data);
    int length = 0;
    for (int place = firstVisible(); place < last && !m_header->isSectionHidden(Column); ++place) {
        const BusFrame frame = m_model.capture().store().frame(m_model.capture().rowAt(place));
        length = std::max<int>(length, frame.is(BusFrame::Remote) ? 0 : frame.length);
    }
    const QString text = FrameColumns::groupedData(QString(3 * length, QLatin1Char('0')));
    const int width = text.size() * digitWidth() + 2 * Padding;
    if (width > m_header->sectionSize(Column)) {
        m_isLayingOut = true;
        m_header->resizeSection(Column, width);
        m_isLayingOut = false;
        QMetaObject::invokeMethod(this, &FrameTableView::arrange, Qt::QueuedConnection);
    }
}

void FrameTableView::slot_headerMenu(const QPoint &place)
{
    QMenu menu(this);
    menu.setObjectName(QStringLiteral("headerMenu"));
    for (int column = 0; column < FrameColumnCount; ++column) {
        QAction *action = menu.addAction(FrameColumns::title(static_cast<FrameColumn>(column)));
        action->setCheckable(true);
        action->setChecked(!m_header->isSectionHidden(column));
        const bool isLast = action->isChecked() && m_header->hiddenSectionCount() == FrameColumnCount - 1;
        action->setEnabled(!isLast && column != static_cast<int>(FrameColumn::SinceMark));
        connect(action, &QAction::toggled, this, [this, column](bool isOn) {
            m_header->setSectionHidden(column, !isOn);
            slot_sectionChanged();
        });
    }
    menu.addSeparator();
    menu.addAction(tr("Co&lumns..."), this, &FrameTableView::sig_columnsWanted);
    menu.exec(m_header->mapToGlobal(place));
}
