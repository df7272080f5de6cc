#include "widgets/QHexEdit.h"

#include "widgets/HexText.h"

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
constexpr int InsertCursorWidth = 2;
constexpr int Margin = 3; ///< above and below the lines, for the frame
constexpr char FirstPrintable = 0x20;
constexpr char LastPrintable = 0x7E;

bool isPrintable(char byte)
{
    return byte >= FirstPrintable && byte <= LastPrintable;
}

QString characterOf(char byte)
{
    return {QLatin1Char(isPrintable(byte) ? byte : '.')};
}

/// The first (0) or second (1) digit.
QString digitOf(char byte, int index)
{
    return hexTextFromBytes(QByteArray(1, byte)).mid(index, 1);
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

class QHexEditPrivate
{
public:
    explicit QHexEditPrivate(QHexEdit *editor)
        : q(editor)
        , buffer([this] { bytesChanged(); })
    {
    }

    void bytesChanged();
    void measure();
    void updateScrollBars() const;
    void ensureCursorVisible() const;
    int visibleLines() const { return std::max(1, (q->viewport()->height() - 2 * Margin) / lineHeight); }
    /// Also of a line that is cut at the lower edge.
    bool isLineVisible(int line) const;
    int lineTop(int line) const { return Margin + (line - q->verticalScrollBar()->value()) * lineHeight; }
    int columnLeft(int column) const { return (column + 1) * charWidth - q->horizontalScrollBar()->value(); }
    int contentWidth() const { return (layout.columns() + 2) * charWidth; }
    HexPlace placeAt(QPoint position) const;
    HexPlace place() const { return {area, buffer.cursor()}; }

    void setArea(HexArea wanted);
    void cursorMoved() const;
    bool handleMove(const QKeyEvent &event);
    bool handleCommand(const QKeyEvent &event);
    bool handleEdit(const QKeyEvent &event);
    bool handleText(const QKeyEvent &event);
    void copy() const;
    void paste();

    QRect cellRect(int byte, HexArea of) const;
    void paintLine(QPainter &painter, int line, const QPalette &palette) const;
    void paintByte(QPainter &painter, int byte, HexArea of, const QPalette &palette) const;
    void paintCursor(QPainter &painter, const QPalette &palette) const;
    QPalette shownPalette() const;

    QHexEdit *q;
    HexBuffer buffer;
    HexLayout layout;
    HexArea area = HexArea::Hex;
    bool readOnly = false;
    int draggedByte = 0; ///< where the mouse button went down
    int reportedSize = 0;
    int charWidth = 1;
    int lineHeight = 1;
};

void QHexEditPrivate::bytesChanged()
{
    layout.size = buffer.size();
    updateScrollBars();
    cursorMoved();
    if (buffer.size() != reportedSize) {
        reportedSize = buffer.size();
        emit q->currentSizeChanged(reportedSize);
    }
    emit q->dataChanged();
}

void QHexEditPrivate::measure()
{
    const QFontMetrics metrics(q->font());
    charWidth = std::max(1, metrics.horizontalAdvance(QLatin1Char('0')));
    lineHeight = std::max(1, metrics.height() + LineSpacing);
    updateScrollBars();
    q->updateGeometry();
    q->viewport()->update();
}

void QHexEditPrivate::updateScrollBars() const
{
    const int width = q->viewport()->width();
    q->verticalScrollBar()->setPageStep(visibleLines());
    q->verticalScrollBar()->setRange(0, layout.lines() - visibleLines());
    q->horizontalScrollBar()->setSingleStep(charWidth);
    q->horizontalScrollBar()->setPageStep(width);
    q->horizontalScrollBar()->setRange(0, contentWidth() - width);
}

void QHexEditPrivate::ensureCursorVisible() const
{
    const int byte = buffer.cursor() / 2;
    const int line = layout.lineOf(byte);
    QScrollBar *vertical = q->verticalScrollBar();
    vertical->setValue(std::clamp(vertical->value(), line - visibleLines() + 1, line));
    const QRect cell = cellRect(byte, area);
    QScrollBar *horizontal = q->horizontalScrollBar();
    if (cell.left() < charWidth) {
        horizontal->setValue(horizontal->value() + cell.left() - charWidth);
    } else if (cell.right() > q->viewport()->width() - charWidth) {
        horizontal->setValue(horizontal->value() + cell.right() - q->viewport()->width() + charWidth);
    }
}

bool QHexEditPrivate::isLineVisible(int line) const
{
    const int first = q->verticalScrollBar()->value();
    return line >= first && line <= first + q->viewport()->height() / lineHeight;
}

HexPlace QHexEditPrivate::placeAt(QPoint position) const
{
    const auto cellOf = [](int pixels, int cell) {
        return pixels < 0 ? -1 : pixels / cell;
    };
    const int line = q->verticalScrollBar()->value() + cellOf(position.y() - Margin, lineHeight);
    return layout.placeAt(line, cellOf(position.x() - columnLeft(0), charWidth));
}

void QHexEditPrivate::setArea(HexArea wanted)
{
    area = wanted;
    if (area == HexArea::Ascii && buffer.cursor() % 2 != 0) {
        buffer.moveTo(buffer.cursor() - 1, false);
    }
    cursorMoved();
}

void QHexEditPrivate::cursorMoved() const
{
    ensureCursorVisible();
    q->viewport()->update();
}

bool QHexEditPrivate::handleMove(const QKeyEvent &event)
{
    const auto isPressed = [&event](const MoveKey &key) {
        return event.matches(key.plain) || event.matches(key.extending);
    };
    const auto *key = std::find_if(std::begin(MoveKeys), std::end(MoveKeys), isPressed);
    if (key == std::end(MoveKeys)) {
        return false;
    }
    const bool extend = event.matches(key->extending);
    buffer.moveTo(layout.moved(key->move, place(), extend, visibleLines()), extend);
    return true;
}

bool QHexEditPrivate::handleCommand(const QKeyEvent &event)
{
    const Qt::KeyboardModifiers modifiers = event.modifiers();
    if (event.matches(QKeySequence::SelectAll)) {
        buffer.select(0, buffer.size());
    } else if (event.matches(QKeySequence::Copy)) {
        copy();
    } else if (event.matches(QKeySequence::Undo)) {
        q->undo();
    } else if (event.matches(QKeySequence::Redo) || (event.key() == Qt::Key_Y && modifiers == Qt::ControlModifier) ||
               (event.key() == Qt::Key_Z && modifiers == (Qt::ControlModifier | Qt::ShiftModifier))) {
        q->redo();
    } else {
        return false;
    }
    return true;
}

bool QHexEditPrivate::handleEdit(const QKeyEvent &event)
{
    if (event.matches(QKeySequence::Cut)) {
        if (!buffer.selection().isEmpty()) {
            copy();
            buffer.removeForward();
        }
    } else if (event.matches(QKeySequence::Paste)) {
        paste();
    } else if (event.matches(QKeySequence::Delete)) {
        buffer.removeForward();
    } else if (event.key() == Qt::Key_Backspace) {
        buffer.removeBackward();
    } else {
        return handleText(event);
    }
    return true;
}

bool QHexEditPrivate::handleText(const QKeyEvent &event)
{
    constexpr auto commands = Qt::ControlModifier | Qt::AltModifier | Qt::MetaModifier;
    if ((event.modifiers() & commands) != 0 || event.text().size() != 1) {
        return false;
    }
    const QChar character = event.text().front();
    if (area == HexArea::Ascii) {
        const char byte = character.toLatin1();
        if (!isPrintable(byte)) {
            return false;
        }
        buffer.typeByte(byte);
        return true;
    }
    const int value = hexDigitValue(character);
    if (value < 0) {
        return false;
    }
    buffer.typeDigit(value);
    return true;
}

void QHexEditPrivate::copy() const
{
    if (!buffer.selection().isEmpty()) {
        QApplication::clipboard()->setText(hexTextFromBytes(buffer.selectedBytes()));
    }
}

void QHexEditPrivate::paste()
{
    const auto bytes = bytesFromHexText(QApplication::clipboard()->text());
    if (bytes) {
        buffer.paste(*bytes);
    }
}

/// The byte's digits or character, in the viewport or beside it. Its line must be visible.
QRect QHexEditPrivate::cellRect(int byte, HexArea of) const
{
    const int index = layout.indexInLine(byte);
    const bool isHex = of == HexArea::Hex;
    const int column = isHex ? layout.hexColumn(index) : layout.asciiColumn(index);
    return {columnLeft(column), lineTop(layout.lineOf(byte)), (isHex ? 2 : 1) * charWidth, lineHeight};
}

QPalette QHexEditPrivate::shownPalette() const
{
    QPalette palette = q->palette();
    if (!q->isEnabled()) {
        palette.setCurrentColorGroup(QPalette::Disabled);
    } else {
        palette.setCurrentColorGroup(q->isActiveWindow() ? QPalette::Active : QPalette::Inactive);
    }
    return palette;
}

void QHexEditPrivate::paintLine(QPainter &painter, int line, const QPalette &palette) const
{
    const int first = line * layout.bytesPerLine;
    if (layout.hasAddresses) {
        const int digits = layout.addressDigits();
        const QString address = QStringLiteral("%1").arg(first, digits, 16, QLatin1Char('0')).toUpper();
        painter.setPen(palette.text().color());
        painter.drawText(QRect(columnLeft(0), lineTop(line), digits * charWidth, lineHeight), Qt::AlignVCenter,
                         address);
    }
    for (int byte = first; byte < std::min(first + layout.bytesPerLine, layout.size); ++byte) {
        paintByte(painter, byte, HexArea::Hex, palette);
        if (layout.hasAscii) {
            paintByte(painter, byte, HexArea::Ascii, palette);
        }
    }
}

void QHexEditPrivate::paintByte(QPainter &painter, int byte, HexArea of, const QPalette &palette) const
{
    const HexBuffer::Range selected = buffer.selection();
    const bool isSelected = byte >= selected.first && byte < selected.end;
    const QRect cell = cellRect(byte, of);
    if (isSelected) {
        // The blank behind a byte is marked with it, unless the selection ends there.
        const bool hasGap =
            of == HexArea::Hex && byte + 1 < selected.end && layout.indexInLine(byte) + 1 < layout.bytesPerLine;
        painter.fillRect(cell.adjusted(0, 0, hasGap ? charWidth : 0, 0), palette.highlight());
    }
    painter.setPen(isSelected ? palette.highlightedText().color() : palette.text().color());
    const char value = buffer.data().at(byte);
    if (of == HexArea::Ascii) {
        painter.drawText(cell, Qt::AlignCenter, characterOf(value));
        return;
    }
    painter.drawText(cell.adjusted(0, 0, -charWidth, 0), Qt::AlignCenter, digitOf(value, 0));
    painter.drawText(cell.adjusted(charWidth, 0, 0, 0), Qt::AlignCenter, digitOf(value, 1));
}

/// A block (inserting: a bar) where typing goes, a frame around the same byte in the other area. Frames only while the
/// editor has no focus.
void QHexEditPrivate::paintCursor(QPainter &painter, const QPalette &palette) const
{
    const int byte = buffer.cursor() / 2;
    if (!isLineVisible(layout.lineOf(byte))) {
        return;
    }
    const HexArea other = area == HexArea::Hex ? HexArea::Ascii : HexArea::Hex;
    QRect cell = cellRect(byte, area);
    if (area == HexArea::Hex) {
        cell.setWidth(charWidth);
        cell.translate(buffer.cursor() % 2 * charWidth, 0);
    }
    painter.setPen(palette.text().color());
    if (layout.hasAscii) {
        paintFrame(painter, cellRect(byte, other));
    }
    if (!q->hasFocus()) {
        paintFrame(painter, cell);
        return;
    }
    if (!buffer.isOverwriteMode()) {
        painter.fillRect(QRect(cell.topLeft(), QSize(InsertCursorWidth, lineHeight)), palette.text());
        return;
    }
    painter.fillRect(cell, palette.text());
    if (byte < buffer.size()) {
        const char value = buffer.data().at(byte);
        painter.setPen(palette.base().color());
        const bool isHex = area == HexArea::Hex;
        painter.drawText(cell, Qt::AlignCenter, isHex ? digitOf(value, buffer.cursor() % 2) : characterOf(value));
    }
}

QHexEdit::QHexEdit(QWidget *parent)
    : QAbstractScrollArea(parent)
    , m_p(std::make_unique<QHexEditPrivate>(this))
{
    m_p->buffer.setOverwriteMode(false);
    QFont fixed = QFontDatabase::systemFont(QFontDatabase::FixedFont);
    fixed.setPointSizeF(QApplication::font().pointSizeF());
    setFont(fixed);
    setFocusPolicy(Qt::StrongFocus);
    setFrameShape(QFrame::NoFrame); // painted here: not every style shows the focus in it
    viewport()->setCursor(Qt::IBeamCursor);
    viewport()->setBackgroundRole(QPalette::Base);
    m_p->layout.bytesPerLine = 16;
    m_p->measure();
}

QHexEdit::~QHexEdit() = default;

void QHexEdit::setData(const QByteArray &data)
{
    m_p->buffer.setData(data);
    updateGeometry();
}

QByteArray QHexEdit::data() const
{
    return m_p->buffer.data();
}

void QHexEdit::setBytesPerLine(int count)
{
    m_p->layout.bytesPerLine = std::max(1, count);
    m_p->updateScrollBars();
    m_p->cursorMoved();
    updateGeometry();
}

int QHexEdit::bytesPerLine() const
{
    return m_p->layout.bytesPerLine;
}

void QHexEdit::setOverwriteMode(bool overwrite)
{
    m_p->buffer.setOverwriteMode(overwrite);
    viewport()->update();
}

void QHexEdit::setReadOnly(bool readOnly)
{
    m_p->readOnly = readOnly;
}

void QHexEdit::setAddressArea(bool visible)
{
    m_p->layout.hasAddresses = visible;
    m_p->measure();
}

void QHexEdit::setAsciiArea(bool visible)
{
    m_p->layout.hasAscii = visible;
    if (!visible) {
        m_p->setArea(HexArea::Hex);
    }
    m_p->measure();
}

void QHexEdit::fill(char byte)
{
    m_p->buffer.fill(byte);
    m_p->cursorMoved();
}

bool QHexEdit::canUndo() const
{
    return !m_p->readOnly && m_p->buffer.history().canUndo();
}

bool QHexEdit::canRedo() const
{
    return !m_p->readOnly && m_p->buffer.history().canRedo();
}

HexPlace QHexEdit::cursor() const
{
    return m_p->place();
}

HexBuffer::Range QHexEdit::selection() const
{
    return m_p->buffer.selection();
}

QRect QHexEdit::byteRect(int byte, HexArea area) const
{
    const bool isShown = area == HexArea::Hex || m_p->layout.hasAscii;
    const bool isByte = byte >= 0 && byte <= m_p->buffer.size();
    if (!isShown || !isByte || !m_p->isLineVisible(m_p->layout.lineOf(byte))) {
        return {};
    }
    return m_p->cellRect(byte, area);
}

QSize QHexEdit::sizeHint() const
{
    const int frame = 2 * frameWidth();
    return {m_p->contentWidth() + frame + verticalScrollBar()->sizeHint().width(),
            LinesWanted * m_p->lineHeight + 2 * Margin + frame + horizontalScrollBar()->sizeHint().height()};
}

QSize QHexEdit::minimumSizeHint() const
{
    const int frame = 2 * frameWidth();
    return {m_p->layout.hexColumn(BytesMin) * m_p->charWidth + frame, LinesMin * m_p->lineHeight + 2 * Margin + frame};
}

void QHexEdit::undo()
{
    if (!m_p->readOnly) {
        m_p->buffer.undo();
    }
}

void QHexEdit::redo()
{
    if (!m_p->readOnly) {
        m_p->buffer.redo();
    }
}

/// Tab goes from the digits to the characters before it leaves, and back the same way.
bool QHexEdit::focusNextPrevChild(bool next)
{
    const HexArea wanted = next ? HexArea::Ascii : HexArea::Hex;
    if (m_p->layout.hasAscii && m_p->area != wanted) {
        m_p->setArea(wanted);
        return true;
    }
    return QAbstractScrollArea::focusNextPrevChild(next);
}

void QHexEdit::changeEvent(QEvent *event)
{
    QAbstractScrollArea::changeEvent(event);
    if (event->type() == QEvent::FontChange || event->type() == QEvent::StyleChange) {
        m_p->measure();
    }
}

void QHexEdit::focusInEvent(QFocusEvent *event)
{
    if (event->reason() == Qt::TabFocusReason) {
        m_p->setArea(HexArea::Hex);
    } else if (event->reason() == Qt::BacktabFocusReason && m_p->layout.hasAscii) {
        m_p->setArea(HexArea::Ascii);
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
    const bool isHandled =
        m_p->handleMove(*event) || m_p->handleCommand(*event) || (!m_p->readOnly && m_p->handleEdit(*event));
    if (!isHandled) {
        event->ignore(); // Enter and Esc are the window's
        return;
    }
    m_p->cursorMoved();
    event->accept();
}

void QHexEdit::mousePressEvent(QMouseEvent *event)
{
    if (event->button() != Qt::LeftButton) {
        event->ignore();
        return;
    }
    const HexPlace place = m_p->placeAt(event->pos());
    const bool extend = event->modifiers().testFlag(Qt::ShiftModifier);
    m_p->draggedByte = extend ? m_p->buffer.cursor() / 2 : place.nibble / 2;
    m_p->area = place.area;
    m_p->buffer.moveTo(place.nibble, extend);
    m_p->cursorMoved();
}

/// From the byte where the button went down to the one under the mouse, both included.
void QHexEdit::mouseMoveEvent(QMouseEvent *event)
{
    if (!event->buttons().testFlag(Qt::LeftButton)) {
        return;
    }
    const int from = m_p->draggedByte;
    const int byte = m_p->placeAt(event->pos()).nibble / 2;
    if (byte == from && m_p->buffer.selection().isEmpty()) {
        return;
    }
    m_p->buffer.select(byte < from ? from + 1 : from, byte < from ? byte : byte + 1);
    m_p->cursorMoved();
}

void QHexEdit::mouseDoubleClickEvent(QMouseEvent *event)
{
    if (event->button() == Qt::LeftButton) {
        const int byte = m_p->placeAt(event->pos()).nibble / 2;
        m_p->buffer.select(byte, byte + 1);
        m_p->cursorMoved();
    }
}

void QHexEdit::paintEvent(QPaintEvent *event)
{
    QPainter painter(viewport());
    const QPalette palette = m_p->shownPalette();
    const int top = verticalScrollBar()->value();
    const int first = top + std::max(0, event->rect().top() - Margin) / m_p->lineHeight;
    const int last = std::min(m_p->layout.lines() - 1, top + event->rect().bottom() / m_p->lineHeight);
    if (m_p->layout.hasAddresses) {
        const int right = m_p->columnLeft(m_p->layout.addressDigits()) + m_p->charWidth / 2;
        painter.fillRect(QRect(QPoint(0, 0), QPoint(right, viewport()->height())), palette.alternateBase());
    }
    for (int line = first; line <= last; ++line) {
        m_p->paintLine(painter, line, palette);
    }
    m_p->paintCursor(painter, palette);
    painter.setPen(hasFocus() ? palette.highlight().color() : palette.mid().color());
    paintFrame(painter, viewport()->rect());
}

void QHexEdit::resizeEvent(QResizeEvent *event)
{
    QAbstractScrollArea::resizeEvent(event);
    m_p->updateScrollBars();
}
