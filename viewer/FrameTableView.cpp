#include "viewer/FrameTableView.h"

#include "viewer/FrameTableActions.h"
#include "viewer/RowColors.h"
#include "viewer/RowCopier.h"

#include <QApplication>
#include <QContextMenuEvent>
#include <QFontDatabase>
#include <QHeaderView>
#include <QKeyEvent>
#include <QLocale>
#include <QMenu>
#include <QPainter>
#include <QScrollBar>
#include <QStyleOptionFocusRect>
#include <QToolTip>

#include <algorithm>

FrameTableView::FrameTableView(FrameTableModel &model, QWidget *parent)
    : QAbstractScrollArea(parent)
    , m_model(model)
    , m_header(new QHeaderView(Qt::Horizontal, this))
    , m_copier(new RowCopier(model, this))
    , m_actions(new FrameTableActions(*this))
{
    setFocusPolicy(Qt::StrongFocus);
    setObjectName(QStringLiteral("table"));
    setAccessibleName(tr("Frames"));
    setFont();
    m_header->setModel(&model);
    m_header->setSectionsMovable(true);
    m_header->setContextMenuPolicy(Qt::CustomContextMenu);
    verticalScrollBar()->setSingleStep(3);
    connect(m_header, &QHeaderView::sectionResized, this, &FrameTableView::slot_sectionResized);
    setColumnLayout({});
    connect(m_header, &QHeaderView::sectionMoved, this, &FrameTableView::slot_sectionChanged);
    connect(m_header, &QHeaderView::customContextMenuRequested, this, &FrameTableView::slot_headerMenu);
    connect(&model, &QAbstractItemModel::modelAboutToBeReset, this,
            [this] { m_rowBeforeReset = m_rowBeforeReset < 0 ? m_currentRow : m_rowBeforeReset; });
    connect(&model, &QAbstractItemModel::modelReset, this, &FrameTableView::slot_reset);
    connect(&model, &QAbstractItemModel::rowsInserted, this, &FrameTableView::slot_inserted);
    connect(&model, &QAbstractItemModel::dataChanged, viewport(), QOverload<>::of(&QWidget::update));
    connect(m_copier, &RowCopier::sig_copied, this, &FrameTableView::slot_copied);
}

FrameTableView::~FrameTableView() = default;

void FrameTableView::setFont()
{
    QFont font = QFontDatabase::systemFont(QFontDatabase::FixedFont);
    font.setPointSizeF(QApplication::font().pointSizeF());
    viewport()->setFont(font);
    m_rowHeight = QFontMetrics(viewport()->font()).height() + Padding;
}

int FrameTableView::digitWidth() const
{
    return QFontMetrics(viewport()->font()).horizontalAdvance(QLatin1Char('0'));
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
    m_isArranging = true;
    verticalScrollBar()->setRange(0, std::max(0, m_model.rowCount() - rows));
    verticalScrollBar()->setPageStep(std::max(1, rows));
    m_isArranging = false;
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

void FrameTableView::scrollContentsBy(int /*dx*/, int dy)
{
    if (dy != 0 && !m_isArranging) {
        setStaysAtEnd(isAtEnd());
    }
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

void FrameTableView::setStaysAtEnd(bool isStaying)
{
    if (m_staysAtEnd != isStaying) {
        m_staysAtEnd = isStaying;
        emit sig_staysAtEndChanged(isStaying);
    }
    if (isStaying) {
        scrollToEnd();
    }
}

std::pair<int, int> FrameTableView::selectedPlaces() const
{
    return {m_current < 0 ? -1 : std::min(m_current, m_anchor), std::max(m_current, m_anchor)};
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

/// The row that was current stays so with another filter, as soon as the filter has come to it.
void FrameTableView::slot_inserted()
{
    arrange();
    if (m_rowBeforeReset >= 0) {
        const qint64 place = m_model.capture().placeOf(m_rowBeforeReset);
        if (place < m_model.rowCount()) {
            const bool isStaying = m_staysAtEnd;
            setCurrentPlace(static_cast<int>(place));
            setStaysAtEnd(isStaying);
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

bool FrameTableView::isSelected(int place) const
{
    return place >= std::min(m_current, m_anchor) && place <= std::max(m_current, m_anchor) && m_current >= 0;
}

void FrameTableView::paintRow(QPainter &painter, int place, const QRect &row) const
{
    const OpenCapture &capture = m_model.capture();
    const qint64 storeRow = capture.rowAt(place);
    const QPalette::ColorGroup group = hasFocus() ? QPalette::Active : QPalette::Inactive;
    const ColorRule *rule = m_model.rule(place);
    const RowColors colors = rule != nullptr ? rowColors(*rule, palette()) : RowColors{};
    if (isSelected(place)) {
        painter.fillRect(row, palette().brush(group, QPalette::Highlight));
    } else if (colors.background.isValid()) {
        painter.fillRect(row, colors.background);
    } else if (place % 2 != 0) {
        painter.fillRect(row, palette().alternateBase());
    }
    if (capture.bookmarks().contains(storeRow) || capture.mark() == storeRow) {
        QColor color = capture.mark() == storeRow ? QColor(Qt::red) : palette().color(QPalette::Link);
        painter.fillRect(row.x(), row.y(), Padding - 1, row.height(), color);
    }
    painter.setPen(isSelected(place)       ? palette().color(group, QPalette::HighlightedText)
                   : colors.text.isValid() ? colors.text
                                           : palette().color(group, QPalette::Text));
    for (int column = 0; column < FrameColumnCount; ++column) {
        const QRect cell(m_header->sectionViewportPosition(column), row.y(), m_header->sectionSize(column),
                         row.height());
        if (!m_header->isSectionHidden(column) && cell.intersects(viewport()->rect())) {
            paintCell(painter, place, static_cast<FrameColumn>(column), cell);
        }
    }
}

void FrameTableView::paintCell(QPainter &painter, int place, FrameColumn column, const QRect &cell) const
{
    const QString text = m_model.text(place, column);
    painter.setClipRect(cell);
    painter.drawText(cell.adjusted(Padding, 0, -Padding, 0),
                     Qt::AlignVCenter | Qt::TextSingleLine |
                         (FrameColumns::isRightAligned(column) ? Qt::AlignRight : Qt::AlignLeft),
                     column == FrameColumn::Data ? FrameColumns::groupedData(text) : text);
    if (place == m_current && column == m_currentColumn && hasFocus()) {
        QStyleOptionFocusRect option;
        option.initFrom(this);
        option.rect = cell;
        option.backgroundColor = palette().color(QPalette::Highlight);
        style()->drawPrimitive(QStyle::PE_FrameFocusRect, &option, &painter, this);
    }
    painter.setClipping(false);
}

void FrameTableView::paintEvent(QPaintEvent * /*event*/)
{
    QPainter painter(viewport());
    painter.fillRect(viewport()->rect(), palette().base());
    const int last = std::min(m_model.rowCount(), firstVisible() + viewport()->height() / m_rowHeight + 1);
    fitData(last);
    for (int place = firstVisible(); place < last; ++place) {
        paintRow(painter, place, {0, (place - firstVisible()) * m_rowHeight, viewport()->width(), m_rowHeight});
    }
}

void FrameTableView::move(int place, bool isSelecting)
{
    setCurrentPlace(std::max(0, std::min(place, m_model.rowCount() - 1)), isSelecting);
}

void FrameTableView::moveColumn(int step)
{
    int visual = m_header->visualIndex(static_cast<int>(m_currentColumn)) + step;
    while (visual >= 0 && visual < FrameColumnCount && m_header->isSectionHidden(m_header->logicalIndex(visual))) {
        visual += step;
    }
    if (visual >= 0 && visual < FrameColumnCount) {
        setCurrentColumn(static_cast<FrameColumn>(m_header->logicalIndex(visual)));
    }
}

void FrameTableView::setCurrentColumn(FrameColumn column)
{
    m_currentColumn = column;
    const int left = m_header->sectionPosition(static_cast<int>(column));
    const int right = left + m_header->sectionSize(static_cast<int>(column));
    QScrollBar &bar = *horizontalScrollBar();
    if (left < bar.value() || right - left > viewport()->width()) {
        bar.setValue(left);
    } else if (right > bar.value() + viewport()->width()) {
        bar.setValue(right - viewport()->width());
    }
    viewport()->update();
}

void FrameTableView::keyPressEvent(QKeyEvent *event)
{
    const int last = m_model.rowCount() - 1;
    if (event->matches(QKeySequence::SelectAll)) {
        const int first = firstVisible();
        setCurrentPlace(last);
        m_anchor = 0;
        verticalScrollBar()->setValue(first);
        return;
    }
    const bool isSelecting = (event->modifiers() & Qt::ShiftModifier) != 0;
    switch (event->key()) {
    case Qt::Key_Up:
        move(m_current - 1, isSelecting);
        break;
    case Qt::Key_Down:
        move(m_current + 1, isSelecting);
        break;
    case Qt::Key_Left:
        moveColumn(-1);
        break;
    case Qt::Key_Right:
        moveColumn(1);
        break;
    case Qt::Key_PageUp:
        move(m_current - visibleRows(), isSelecting);
        break;
    case Qt::Key_PageDown:
        move(last - m_current > visibleRows() ? m_current + visibleRows() : last, isSelecting);
        break;
    case Qt::Key_Home:
        move(0, isSelecting);
        break;
    case Qt::Key_End:
        move(last, isSelecting);
        break;
    default:
        QAbstractScrollArea::keyPressEvent(event);
    }
}

void FrameTableView::mousePressEvent(QMouseEvent *event)
{
    const int place = placeAt(event->pos().y());
    const int column = m_header->logicalIndexAt(event->pos().x());
    if (column >= 0) {
        m_currentColumn = static_cast<FrameColumn>(column);
        viewport()->update();
    }
    if (event->button() == Qt::LeftButton || !isSelected(place)) {
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

QString FrameTableView::cellFilter() const
{
    return m_model.sameCell(m_menuPlace >= 0 ? m_menuPlace : m_current, m_currentColumn);
}

qint64 FrameTableView::cellRow() const
{
    const bool isOfMenu = m_menuPlace >= 0 && m_menuPlace < m_model.rowCount();
    return isOfMenu ? m_model.capture().rowAt(m_menuPlace) : m_currentRow;
}

void FrameTableView::copy(bool isCsv)
{
    QVector<FrameColumn> columns;
    for (int visual = 0; visual < FrameColumnCount; ++visual) {
        const int column = m_header->logicalIndex(visual);
        if (!m_header->isSectionHidden(column)) {
            columns.append(static_cast<FrameColumn>(column));
        }
    }
    if (m_current >= 0) {
        m_copier->start(std::min(m_current, m_anchor), std::max(m_current, m_anchor), columns, isCsv);
    }
}

void FrameTableView::slot_copied(int rows, bool isCut)
{
    const QString count = QLocale().toString(rows);
    emit sig_told(isCut ? tr("Only the first %1 frames of the selection were copied.").arg(count)
                        : tr("Frames copied: %1").arg(count));
}

void FrameTableView::showToolTip(const QHelpEvent &event)
{
    const int place = placeAt(event.pos().y());
    const int column = m_header->logicalIndexAt(event.pos().x());
    const QString text = column >= 0 ? m_model.toolTip(place, static_cast<FrameColumn>(column)) : QString();
    QToolTip::showText(event.globalPos(), text, viewport());
}

bool FrameTableView::viewportEvent(QEvent *event)
{
    if (event->type() == QEvent::ToolTip) {
        showToolTip(*static_cast<QHelpEvent *>(event));
        return true;
    }
    return QAbstractScrollArea::viewportEvent(event);
}

void FrameTableView::contextMenuEvent(QContextMenuEvent *event)
{
    if (m_current < 0) {
        return;
    }
    QPoint position = event->pos(); // of the mouse it is in the viewport already
    if (event->reason() == QContextMenuEvent::Keyboard) {
        position = {m_header->sectionViewportPosition(static_cast<int>(m_currentColumn)),
                    (m_current - firstVisible() + 1) * m_rowHeight};
    } else {
        m_menuPlace = std::min(placeAt(position.y()), m_model.rowCount() - 1);
    }
    QMenu menu(this);
    menu.setObjectName(QStringLiteral("cellMenu"));
    menu.setToolTipsVisible(true);
    m_actions->fill(menu);
    emit sig_menuWanted(&menu, cellRow());
    menu.exec(viewport()->mapToGlobal(position));
    m_menuPlace = -1;
}
