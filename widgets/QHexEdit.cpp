#include "widgets/QHexEdit.h"

#include "widgets/HexEntry.h"

#include <QApplication>
#include <QClipboard>
#include <QFontDatabase>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>
#include <QScrollBar>

#include <algorithm>
#include <iterator>

namespace {
constexpr int LinesWanted = 8;
constexpr int LinesMin = 3;
constexpr int BytesMin = 8;
constexpr int LineSpacing = 2; ///< device-independent pixels between lines
constexpr int Margin = 3;      ///< above and below the lines, for the frame

bool isPrintable(char byte)
{
    return byte >= ' ' && byte <= '~';
}

/// One device-independent pixel wide, whole inside the rectangle on every scale.
void paintFrame(QPainter &painter, const QRect &rect)
{
    constexpr qreal half = 0.5;
    painter.setBrush(Qt::NoBrush);
    painter.drawRect(QRectF(rect).adjusted(half, half, -half, -half));
}

struct MoveKey
{
    QKeySequence::StandardKey plain;
    QKeySequence::StandardKey extending;
    HexMove move;
};

constexpr MoveKey MoveKeys[] = {
    {QKeySequence::MoveToPreviousChar, QKeySequence::SelectPreviousChar, HexMove::Left},
    {QKeySequence::MoveToNextChar, QKeySequence::SelectNextChar, HexMove::Right},
    {QKeySequence::MoveToPreviousLine, QKeySequence::SelectPreviousLine, HexMove::Up},
    {QKeySequence::MoveToNextLine, QKeySequence::SelectNextLine, HexMove::Down},
    {QKeySequence::MoveToPreviousPage, QKeySequence::SelectPreviousPage, HexMove::PageUp},
    {QKeySequence::MoveToNextPage, QKeySequence::SelectNextPage, HexMove::PageDown},
    {QKeySequence::MoveToStartOfLine, QKeySequence::SelectStartOfLine, HexMove::LineStart},
    {QKeySequence::MoveToEndOfLine, QKeySequence::SelectEndOfLine, HexMove::LineEnd},
    {QKeySequence::MoveToStartOfDocument, QKeySequence::SelectStartOfDocument, HexMove::Start},
    {QKeySequence::MoveToEndOfDocument, QKeySequence::SelectEndOfDocument, HexMove::End},
};
} // namespace

QHexEdit::QHexEdit(QWidget *parent)
    : QAbstractScrollArea(parent)
{
    QFont fixed = QFontDatabase::systemFont(QFontDatabase::FixedFont);
    fixed.setPointSizeF(QApplication::font().pointSizeF());
    setFont(fixed);
    setFocusPolicy(Qt::StrongFocus);
    setFrameShape(QFrame::NoFrame); // painted here: not every style shows the focus in it
    viewport()->setCursor(Qt::IBeamCursor);
    viewport()->setBackgroundRole(QPalette::Base);
    connect(&m_buffer.history(), &QUndoStack::indexChanged, this, [this] {
        showCursor();
        emit dataChanged();
    });
}

QHexEdit::~QHexEdit()
{
    m_buffer.history().disconnect(this); // which is emptied as it goes, and says so
}

void QHexEdit::setData(const QByteArray &data)
{
    m_buffer.setData(data);
    m_layout.size = data.size();
    updateScrollBars();
    showCursor();
}

void QHexEdit::setBytesPerLine(int count)
{
    m_layout.bytesPerLine = std::max(1, count);
    updateScrollBars();
    showCursor();
    updateGeometry();
}

QRect QHexEdit::byteRect(int byte, HexArea area) const
{
    const int column = m_layout.columnOf(m_layout.indexInLine(byte), area);
    return cells(m_layout.lineOf(byte), column, area == HexArea::Hex ? 2 : 1);
}

QSize QHexEdit::sizeHint() const
{
    return {(m_layout.columns() + 2) * charWidth() + verticalScrollBar()->sizeHint().width(),
            LinesWanted * lineHeight() + 2 * Margin + horizontalScrollBar()->sizeHint().height()};
}

QSize QHexEdit::minimumSizeHint() const
{
    return {m_layout.columnOf(BytesMin, HexArea::Hex) * charWidth(), LinesMin * lineHeight() + 2 * Margin};
}

void QHexEdit::undo()
{
    if (canUndo()) {
        m_buffer.history().undo();
    }
}

void QHexEdit::redo()
{
    if (canRedo()) {
        m_buffer.history().redo();
    }
}

int QHexEdit::charWidth() const
{
    return std::max(1, fontMetrics().horizontalAdvance(QLatin1Char('0')));
}

int QHexEdit::lineHeight() const
{
    return fontMetrics().height() + LineSpacing;
}

/// Whole ones.
int QHexEdit::visibleLines() const
{
    return std::max(1, (viewport()->height() - 2 * Margin) / lineHeight());
}

/// Where characters of a line stand in the viewport or beside it.
QRect QHexEdit::cells(int line, int column, int count) const
{
    const int left = (column + 1) * charWidth() - horizontalScrollBar()->value();
    const int top = Margin + (line - verticalScrollBar()->value()) * lineHeight();
    return {left, top, count * charWidth(), lineHeight()};
}

HexPlace QHexEdit::placeAt(QPoint position) const
{
    const QPoint origin = cells(0, 0, 1).topLeft();
    const auto cellOf = [](int pixels, int cell) {
        return pixels < 0 ? -1 : pixels / cell;
    };
    return m_layout.placeAt(cellOf(position.y() - origin.y(), lineHeight()),
                            cellOf(position.x() - origin.x(), charWidth()));
}

void QHexEdit::updateScrollBars()
{
    const int width = viewport()->width();
    verticalScrollBar()->setPageStep(visibleLines());
    verticalScrollBar()->setRange(0, m_layout.lines() - visibleLines());
    horizontalScrollBar()->setSingleStep(charWidth());
    horizontalScrollBar()->setPageStep(width);
    horizontalScrollBar()->setRange(0, (m_layout.columns() + 2) * charWidth() - width);
}

/// Scrolls to the cursor and has all painted anew.
void QHexEdit::showCursor()
{
    const int byte = m_buffer.cursor() / 2;
    const int line = m_layout.lineOf(byte);
    QScrollBar *vertical = verticalScrollBar();
    vertical->setValue(std::clamp(vertical->value(), line - visibleLines() + 1, line));
    const QRect cell = byteRect(byte, m_area);
    const int tooFarLeft = charWidth() - cell.left();
    const int tooFarRight = cell.right() + charWidth() - viewport()->width();
    QScrollBar *horizontal = horizontalScrollBar();
    if (tooFarLeft > 0) {
        horizontal->setValue(horizontal->value() - tooFarLeft);
    } else if (tooFarRight > 0) {
        horizontal->setValue(horizontal->value() + tooFarRight);
    }
    viewport()->update();
}

void QHexEdit::setArea(HexArea area)
{
    m_area = area;
    if (area == HexArea::Ascii && m_buffer.cursor() % 2 != 0) {
        m_buffer.moveTo(m_buffer.cursor() - 1, false);
    }
    showCursor();
}

bool QHexEdit::handleMove(const QKeyEvent &event)
{
    const auto isPressed = [&event](const MoveKey &key) {
        return event.matches(key.plain) || event.matches(key.extending);
    };
    const auto *key = std::find_if(std::begin(MoveKeys), std::end(MoveKeys), isPressed);
    if (key == std::end(MoveKeys)) {
        return false;
    }
    const bool extend = event.matches(key->extending);
    m_buffer.moveTo(m_layout.moved(key->move, cursor(), extend, visibleLines()), extend);
    return true;
}

bool QHexEdit::handleCommand(const QKeyEvent &event)
{
    if (event.matches(QKeySequence::SelectAll)) {
        m_buffer.select(0, m_buffer.size());
    } else if (event.matches(QKeySequence::Copy)) {
        copy();
    } else if (event.matches(QKeySequence::Undo)) {
        undo();
    } else if (event.matches(QKeySequence::Redo)) {
        redo();
    } else {
        return false;
    }
    return true;
}

bool QHexEdit::handleEdit(const QKeyEvent &event)
{
    if (event.matches(QKeySequence::Cut)) {
        if (!selection().isEmpty()) {
            copy();
            m_buffer.removeForward();
        }
    } else if (event.matches(QKeySequence::Paste)) {
        if (const auto bytes = bytesFromHexText(QApplication::clipboard()->text())) {
            m_buffer.write(*bytes);
        }
    } else if (event.matches(QKeySequence::Delete)) {
        m_buffer.removeForward();
    } else if (event.key() == Qt::Key_Backspace) {
        m_buffer.removeBackward();
    } else {
        return handleText(event);
    }
    return true;
}

bool QHexEdit::handleText(const QKeyEvent &event)
{
    constexpr auto commands = Qt::ControlModifier | Qt::AltModifier | Qt::MetaModifier;
    if ((event.modifiers() & commands) != 0 || event.text().size() != 1) {
        return false;
    }
    if (m_area == HexArea::Ascii) {
        const char byte = event.text().front().toLatin1();
        if (!isPrintable(byte)) {
            return false;
        }
        m_buffer.write(QByteArray(1, byte));
        return true;
    }
    const auto digit = bytesFromHexText(event.text());
    if (!digit) {
        return false;
    }
    m_buffer.typeDigit(digit->front());
    return true;
}

void QHexEdit::copy() const
{
    if (!selection().isEmpty()) {
        QApplication::clipboard()->setText(hexTextFromBytes(m_buffer.selectedBytes()));
    }
}

/// Empty behind the last byte.
QString QHexEdit::textOf(int byte, HexArea area) const
{
    const QByteArray bytes = m_buffer.data().mid(byte, 1);
    if (bytes.isEmpty() || area == HexArea::Hex) {
        return hexTextFromBytes(bytes);
    }
    return {QLatin1Char(isPrintable(bytes.front()) ? bytes.front() : '.')};
}

void QHexEdit::paintByte(QPainter &painter, int byte, HexArea area) const
{
    const QRect rect = byteRect(byte, area);
    const HexBuffer::Range selected = selection();
    const bool isSelected = byte >= selected.first && byte < selected.end;
    if (isSelected) {
        // The blank behind a byte is marked with it, unless the selection ends there.
        const bool hasGap =
            area == HexArea::Hex && byte + 1 < selected.end && m_layout.indexInLine(byte) + 1 < m_layout.bytesPerLine;
        painter.fillRect(rect.adjusted(0, 0, hasGap ? charWidth() : 0, 0), palette().highlight());
    }
    painter.setPen(isSelected ? palette().highlightedText().color() : palette().text().color());
    QRect cell(rect.topLeft(), QSize(charWidth(), rect.height()));
    for (const QChar character : textOf(byte, area)) {
        painter.drawText(cell, Qt::AlignCenter, character);
        cell.translate(charWidth(), 0);
    }
}

/// A block where typing goes, a frame around the same byte in the other area. Frames only while the editor has no
/// focus.
void QHexEdit::paintCursor(QPainter &painter) const
{
    const int byte = m_buffer.cursor() / 2;
    const bool isHex = m_area == HexArea::Hex;
    const int digit = isHex ? m_buffer.cursor() % 2 : 0;
    const QRect cell(byteRect(byte, m_area).topLeft() + QPoint(digit * charWidth(), 0),
                     QSize(charWidth(), lineHeight()));
    painter.setPen(palette().text().color());
    paintFrame(painter, byteRect(byte, isHex ? HexArea::Ascii : HexArea::Hex));
    if (!hasFocus()) {
        paintFrame(painter, cell);
        return;
    }
    painter.fillRect(cell, palette().text());
    painter.setPen(palette().base().color());
    painter.drawText(cell, Qt::AlignCenter, textOf(byte, m_area).mid(digit, 1));
}

/// Tab goes from the digits to the characters before it leaves, and back the same way.
bool QHexEdit::focusNextPrevChild(bool next)
{
    const HexArea wanted = next ? HexArea::Ascii : HexArea::Hex;
    if (m_area == wanted) {
        return QAbstractScrollArea::focusNextPrevChild(next);
    }
    setArea(wanted);
    return true;
}

void QHexEdit::focusInEvent(QFocusEvent *event)
{
    if (event->reason() == Qt::TabFocusReason) {
        setArea(HexArea::Hex);
    } else if (event->reason() == Qt::BacktabFocusReason) {
        setArea(HexArea::Ascii);
    }
    QAbstractScrollArea::focusInEvent(event);
    viewport()->update();
}

void QHexEdit::focusOutEvent(QFocusEvent *event)
{
    QAbstractScrollArea::focusOutEvent(event);
    viewport()->update();
}

void QHexEdit::keyPressEvent(QKeyEvent *event)
{
    event->setAccepted(handleMove(*event) || handleCommand(*event) || (!m_readOnly && handleEdit(*event)));
    if (event->isAccepted()) { // Enter and Esc are the window's
        showCursor();
    }
}

void QHexEdit::mousePressEvent(QMouseEvent *event)
{
    if (event->button() != Qt::LeftButton) {
        event->ignore();
        return;
    }
    const HexPlace place = placeAt(event->pos());
    const bool extend = event->modifiers().testFlag(Qt::ShiftModifier);
    m_draggedByte = extend ? m_buffer.cursor() / 2 : place.nibble / 2;
    m_area = place.area;
    m_buffer.moveTo(place.nibble, extend);
    showCursor();
}

/// From the byte where the button went down to the one under the mouse, both included.
void QHexEdit::mouseMoveEvent(QMouseEvent *event)
{
    const int byte = placeAt(event->pos()).nibble / 2;
    if (!event->buttons().testFlag(Qt::LeftButton) || (byte == m_draggedByte && selection().isEmpty())) {
        return;
    }
    const bool isBefore = byte < m_draggedByte;
    m_buffer.select(m_draggedByte + (isBefore ? 1 : 0), byte + (isBefore ? 0 : 1));
    showCursor();
}

void QHexEdit::mouseDoubleClickEvent(QMouseEvent *event)
{
    if (event->button() == Qt::LeftButton) {
        const int byte = placeAt(event->pos()).nibble / 2;
        m_buffer.select(byte, byte + 1);
        showCursor();
    }
}

void QHexEdit::paintEvent(QPaintEvent * /*event*/)
{
    QPainter painter(viewport());
    const int addressEnd = cells(0, HexLayout::AddressDigits, 1).left() + charWidth() / 2;
    painter.fillRect(QRect(QPoint(0, 0), QPoint(addressEnd, viewport()->height())), palette().alternateBase());
    painter.setPen(palette().text().color());
    const int top = verticalScrollBar()->value(); // nothing of the lines above it, which would reach into the margin
    for (int line = top; line < m_layout.lines(); ++line) {
        const QString address =
            QStringLiteral("%1").arg(line * m_layout.bytesPerLine, HexLayout::AddressDigits, 16, QLatin1Char('0'));
        painter.drawText(cells(line, 0, HexLayout::AddressDigits), Qt::AlignVCenter, address.toUpper());
    }
    for (int byte = top * m_layout.bytesPerLine; byte < m_layout.size; ++byte) {
        paintByte(painter, byte, HexArea::Hex);
        paintByte(painter, byte, HexArea::Ascii);
    }
    if (m_layout.lineOf(m_buffer.cursor() / 2) >= top) {
        paintCursor(painter);
    }
    painter.setPen(hasFocus() ? palette().highlight().color() : palette().mid().color());
    paintFrame(painter, viewport()->rect());
}

void QHexEdit::resizeEvent(QResizeEvent *event)
{
    QAbstractScrollArea::resizeEvent(event);
    updateScrollBars();
}
