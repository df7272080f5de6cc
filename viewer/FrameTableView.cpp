#include "viewer/FrameTableView.h"

#include <QApplication>
#include <QClipboard>
#include <QContextMenuEvent>
#include <QFontDatabase>
#include <QHeaderView>
#include <QKeyEvent>
#include <QMenu>
#include <QPainter>
#include <QScrollBar>

#include <algorithm>

namespace {

constexpr int Padding = 4;

struct ColumnLook
{
    int characters;
    bool isHidden;
};

/// By FrameColumn.
constexpr std::array<ColumnLook, FrameColumnCount> Looks{{{10, false},
                                                          {30, true},
                                                          {17, false},
                                                          {16, false},
                                                          {16, true},
                                                          {16, true},
                                                          {8, false},
                                                          {9, false},
                                                          {9, false},
                                                          {14, false},
                                                          {11, false},
                                                          {7, false},
                                                          {40, false}}};

QString csvCell(QString text)
{
    if (text.contains(QLatin1Char(',')) || text.contains(QLatin1Char('"')) || text.contains(QLatin1Char('\n'))) {
        text = QLatin1Char('"') + text.replace(QLatin1Char('"'), QStringLiteral("\"\"")) + QLatin1Char('"');
    }
    return text;
}

} // namespace

FrameTableView::FrameTableView(FrameTableModel &model, QWidget *parent)
    : QAbstractScrollArea(parent)
    , m_model(model)
    , m_header(new QHeaderView(Qt::Horizontal, this))
{
    setFocusPolicy(Qt::StrongFocus);
    setObjectName(QStringLiteral("table"));
    setAccessibleName(tr("Frames"));
    setFont();
    m_header->setModel(&model);
    m_header->setSectionsMovable(true);
    m_header->setStretchLastSection(true);
    m_header->setContextMenuPolicy(Qt::CustomContextMenu);
    const int width = QFontMetrics(viewport()->font()).horizontalAdvance(QLatin1Char('0'));
    for (int column = 0; column < FrameColumnCount; ++column) {
        const ColumnLook &look = Looks[static_cast<std::size_t>(column)];
        const int title =
            QFontMetrics(m_header->font()).horizontalAdvance(FrameColumns::title(static_cast<FrameColumn>(column)));
        m_header->resizeSection(column, std::max(look.characters * width, title + 12) + 2 * Padding);
        m_header->setSectionHidden(column, look.isHidden);
    }
    verticalScrollBar()->setSingleStep(3);
    connect(m_header, &QHeaderView::sectionResized, this, &FrameTableView::arrange);
    connect(m_header, &QHeaderView::sectionMoved, viewport(), QOverload<>::of(&QWidget::update));
    connect(m_header, &QHeaderView::customContextMenuRequested, this, &FrameTableView::slot_headerMenu);
    connect(&model, &QAbstractItemModel::modelAboutToBeReset, this,
            [this] { m_rowBeforeReset = m_rowBeforeReset < 0 ? m_currentRow : m_rowBeforeReset; });
    connect(&model, &QAbstractItemModel::modelReset, this, &FrameTableView::slot_reset);
    connect(&model, &QAbstractItemModel::rowsAboutToBeInserted, this, &FrameTableView::slot_aboutToInsert);
    connect(&model, &QAbstractItemModel::rowsInserted, this, &FrameTableView::slot_inserted);
    connect(&model, &QAbstractItemModel::dataChanged, viewport(), QOverload<>::of(&QWidget::update));
}

FrameTableView::~FrameTableView() = default;

void FrameTableView::setFont()
{
    QFont font = QFontDatabase::systemFont(QFontDatabase::FixedFont);
    font.setPointSizeF(QApplication::font().pointSizeF());
    viewport()->setFont(font);
    m_rowHeight = QFontMetrics(font).height() + Padding;
}

void FrameTableView::changeEvent(QEvent *event)
{
    QAbstractScrollArea::changeEvent(event);
    if (event->type() == QEvent::StyleChange || event->type() == QEvent::FontChange) {
        setFont();
        arrange();
    }
}

void FrameTableView::arrange()
{
    const int height = m_header->sizeHint().height();
    setViewportMargins(0, height, 0, 0);
    m_header->setGeometry(viewport()->x(), viewport()->y() - height, viewport()->width(), height);
    const int rows = viewport()->height() / m_rowHeight;
    verticalScrollBar()->setRange(0, std::max(0, m_model.rowCount() - rows));
    verticalScrollBar()->setPageStep(std::max(1, rows));
    horizontalScrollBar()->setRange(0, std::max(0, m_header->length() - viewport()->width()));
    horizontalScrollBar()->setPageStep(viewport()->width());
    m_header->setOffset(horizontalScrollBar()->value());
    viewport()->update();
}

void FrameTableView::resizeEvent(QResizeEvent *event)
{
    const bool isEnd = isAtEnd();
    QAbstractScrollArea::resizeEvent(event);
    arrange();
    if (isEnd) {
        scrollToEnd();
    }
}

void FrameTableView::scrollContentsBy(int /*dx*/, int /*dy*/)
{
    m_header->setOffset(horizontalScrollBar()->value());
    viewport()->update();
}

int FrameTableView::firstVisible() const
{
    return verticalScrollBar()->value();
}

int FrameTableView::visibleRows() const
{
    return std::max(1, viewport()->height() / m_rowHeight);
}

bool FrameTableView::isAtEnd() const
{
    return verticalScrollBar()->value() == verticalScrollBar()->maximum();
}

void FrameTableView::scrollToEnd()
{
    verticalScrollBar()->setValue(verticalScrollBar()->maximum());
}

void FrameTableView::setCurrentPlace(int place, bool keepsAnchor)
{
    if (place < 0 || place >= m_model.rowCount()) {
        return;
    }
    m_rowBeforeReset = -1;
    m_current = place;
    m_currentRow = m_model.capture().rowAt(place);
    m_anchor = keepsAnchor && m_anchor >= 0 ? m_anchor : place;
    const int first = firstVisible();
    if (place < first) {
        verticalScrollBar()->setValue(place);
    } else if (place >= first + visibleRows()) {
        verticalScrollBar()->setValue(place - visibleRows() + 1);
    }
    viewport()->update();
    emit sig_currentChanged(m_currentRow);
}

void FrameTableView::slot_reset()
{
    m_current = -1;
    m_currentRow = -1;
    m_anchor = -1;
    arrange();
    slot_inserted();
}

void FrameTableView::slot_aboutToInsert()
{
    m_staysAtEnd = isAtEnd() && m_model.rowCount() > visibleRows();
}

/// The row that was current stays so with another filter, as soon as the filter has come to it.
void FrameTableView::slot_inserted()
{
    arrange();
    if (m_rowBeforeReset >= 0) {
        const qint64 place = m_model.capture().placeOf(m_rowBeforeReset);
        if (place < m_model.rowCount()) {
            setCurrentPlace(static_cast<int>(place));
            return;
        }
    }
    if (m_staysAtEnd) {
        scrollToEnd();
    }
}

int FrameTableView::placeAt(int y) const
{
    return firstVisible() + y / m_rowHeight;
}

void FrameTableView::paintRow(QPainter &painter, int place, const QRect &row) const
{
    const bool isSelected =
        place >= std::min(m_current, m_anchor) && place <= std::max(m_current, m_anchor) && m_current >= 0;
    const OpenCapture &capture = m_model.capture();
    const qint64 storeRow = capture.rowAt(place);
    const QPalette::ColorGroup group = hasFocus() ? QPalette::Active : QPalette::Inactive;
    if (isSelected) {
        painter.fillRect(row, palette().brush(group, QPalette::Highlight));
    } else if (place % 2 != 0) {
        painter.fillRect(row, palette().alternateBase());
    }
    if (capture.bookmarks().contains(storeRow) || capture.mark() == storeRow) {
        QColor color = capture.mark() == storeRow ? QColor(Qt::red) : palette().color(QPalette::Link);
        painter.fillRect(row.x(), row.y(), 3, row.height(), color);
    }
    painter.setPen(palette().color(group, isSelected ? QPalette::HighlightedText : QPalette::Text));
    for (int column = 0; column < FrameColumnCount; ++column) {
        const int left = m_header->sectionViewportPosition(column);
        const QRect cell(left, row.y(), m_header->sectionSize(column), row.height());
        if (!m_header->isSectionHidden(column) && cell.intersects(viewport()->rect())) {
            painter.setClipRect(cell);
            painter.drawText(
                cell.adjusted(Padding, 0, -Padding, 0),
                Qt::AlignVCenter | Qt::TextSingleLine |
                    (FrameColumns::isRightAligned(static_cast<FrameColumn>(column)) ? Qt::AlignRight : Qt::AlignLeft),
                m_model.text(place, static_cast<FrameColumn>(column)));
        }
    }
    painter.setClipping(false);
}

void FrameTableView::paintEvent(QPaintEvent * /*event*/)
{
    QPainter painter(viewport());
    painter.fillRect(viewport()->rect(), palette().base());
    const int last = std::min(m_model.rowCount(), firstVisible() + viewport()->height() / m_rowHeight + 1);
    for (int place = firstVisible(); place < last; ++place) {
        paintRow(painter, place, {0, (place - firstVisible()) * m_rowHeight, viewport()->width(), m_rowHeight});
    }
}

void FrameTableView::keyPressEvent(QKeyEvent *event)
{
    if (event->matches(QKeySequence::Copy)) {
        copy(false);
        return;
    }
    const int last = m_model.rowCount() - 1;
    if (event->matches(QKeySequence::SelectAll)) {
        const int first = firstVisible();
        setCurrentPlace(last);
        m_anchor = 0;
        verticalScrollBar()->setValue(first);
        return;
    }
    const bool isSelecting = (event->modifiers() & Qt::ShiftModifier) != 0;
    const auto move = [this, last, isSelecting](int place) {
        setCurrentPlace(std::max(0, std::min(place, last)), isSelecting);
    };
    switch (event->key()) {
    case Qt::Key_Up:
        move(m_current - 1);
        break;
    case Qt::Key_Down:
        move(m_current + 1);
        break;
    case Qt::Key_PageUp:
        move(m_current - visibleRows());
        break;
    case Qt::Key_PageDown:
        move(last - m_current > visibleRows() ? m_current + visibleRows() : last);
        break;
    case Qt::Key_Home:
        move(0);
        break;
    case Qt::Key_End:
        move(last);
        break;
    default:
        QAbstractScrollArea::keyPressEvent(event);
    }
}

void FrameTableView::mousePressEvent(QMouseEvent *event)
{
    const int place = placeAt(event->pos().y());
    const bool isInSelection = place >= std::min(m_current, m_anchor) && place <= std::max(m_current, m_anchor);
    if (event->button() == Qt::LeftButton || !isInSelection) {
        setCurrentPlace(place, (event->modifiers() & Qt::ShiftModifier) != 0);
    }
}

void FrameTableView::mouseMoveEvent(QMouseEvent *event)
{
    if ((event->buttons() & Qt::LeftButton) != 0 && m_current >= 0) {
        const int step = event->pos().y() < 0 ? -1 : event->pos().y() / m_rowHeight;
        setCurrentPlace(std::max(0, std::min(firstVisible() + step, m_model.rowCount() - 1)), true);
    }
}

QString FrameTableView::selectedText(bool isCsv) const
{
    if (m_current < 0) {
        return {};
    }
    const QString separator = isCsv ? QStringLiteral(",") : QStringLiteral("\t");
    QVector<FrameColumn> columns;
    QStringList cells;
    for (int visual = 0; visual < FrameColumnCount; ++visual) {
        const int column = m_header->logicalIndex(visual);
        if (!m_header->isSectionHidden(column)) {
            columns.append(static_cast<FrameColumn>(column));
            const QString title = FrameColumns::title(columns.last());
            cells.append(isCsv ? csvCell(title) : title);
        }
    }
    QString text = cells.join(separator) + QLatin1Char('\n');
    const int first = std::min(m_current, m_anchor);
    const int last = std::min(std::max(m_current, m_anchor), first + MaxCopied - 1);
    for (int place = first; place <= last; ++place) {
        cells.clear();
        for (const FrameColumn column : qAsConst(columns)) {
            const QString cell = m_model.text(place, column);
            cells.append(isCsv ? csvCell(cell) : cell);
        }
        text += cells.join(separator) + QLatin1Char('\n');
    }
    return text;
}

void FrameTableView::copy(bool isCsv) const
{
    QApplication::clipboard()->setText(selectedText(isCsv));
}

void FrameTableView::addFilterActions(QMenu &menu, const QPoint &position)
{
    const int column = m_header->logicalIndexAt(position.x());
    const QString filter = column >= 0 ? m_model.sameCell(m_current, static_cast<FrameColumn>(column)) : QString();
    for (const bool isNegated : {false, true}) {
        QAction *action = menu.addAction(isNegated ? tr("Not these") : tr("Only these"), this,
                                         [this, filter, isNegated] { emit sig_filterWanted(filter, isNegated); });
        action->setEnabled(!filter.isEmpty());
        action->setToolTip(filter);
    }
}

void FrameTableView::contextMenuEvent(QContextMenuEvent *event)
{
    if (m_current < 0) {
        return;
    }
    QPoint position = viewport()->mapFrom(this, event->pos());
    if (event->reason() == QContextMenuEvent::Keyboard) {
        position = {m_header->sectionViewportPosition(static_cast<int>(FrameColumn::Identifier)),
                    (m_current - firstVisible() + 1) * m_rowHeight};
    }
    QMenu menu(this);
    menu.setToolTipsVisible(true);
    addFilterActions(menu, position);
    menu.addSeparator();
    menu.addAction(tr("Time zero here"), this, [this] { emit sig_markWanted(currentRow()); });
    menu.addAction(tr("Bookmark..."), this, [this] { emit sig_bookmarkWanted(currentRow()); });
    menu.addSeparator();
    menu.addAction(tr("Copy"), this, [this] { copy(false); });
    menu.addAction(tr("Copy as CSV"), this, [this] { copy(true); });
    emit sig_menuWanted(&menu, currentRow());
    menu.exec(viewport()->mapToGlobal(position));
}

void FrameTableView::slot_headerMenu(const QPoint &place)
{
    QMenu menu(this);
    for (int column = 0; column < FrameColumnCount; ++column) {
        QAction *action = menu.addAction(FrameColumns::title(static_cast<FrameColumn>(column)));
        action->setCheckable(true);
        action->setChecked(!m_header->isSectionHidden(column));
        connect(action, &QAction::toggled, this, [this, column](bool isOn) {
            m_header->setSectionHidden(column, !isOn);
            arrange();
        });
    }
    menu.exec(m_header->mapToGlobal(place));
}
