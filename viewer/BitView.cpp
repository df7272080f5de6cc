#include "viewer/BitView.h"

#include <QHelpEvent>
#include <QKeyEvent>
#include <QPainter>
#include <QScrollBar>
#include <QToolTip>

#include <algorithm>

namespace {

constexpr int BitsInRow = 8;
constexpr int DarkLightness = 128;

/// Where a bit is drawn: its column from the left, bit 7 is the first.
int columnOf(int bit)
{
    return BitsInRow - 1 - bit % BitsInRow;
}

/// Left, right, up and down in the drawing; 0 for any other key.
int stepOf(int key)
{
    switch (key) {
    case Qt::Key_Left:
        return 1;
    case Qt::Key_Right:
        return -1;
    case Qt::Key_Up:
        return -BitsInRow;
    case Qt::Key_Down:
        return BitsInRow;
    default:
        return 0;
    }
}

} // namespace

BitView::BitView(QWidget *parent)
    : QAbstractScrollArea(parent)
{
    setObjectName(QStringLiteral("bits"));
    setAccessibleName(tr("Bits of the frame"));
    setFocusPolicy(Qt::StrongFocus);
    setBackgroundRole(QPalette::Base);
    viewport()->setBackgroundRole(QPalette::Base);
    viewport()->setAutoFillBackground(true);
}

QColor BitView::colour(int place, const QPalette &palette)
{
    // Each hue is far from the last ones, however many there are.
    constexpr int HueStep = 137;
    constexpr int FirstHue = 210;
    const bool isDark = palette.color(QPalette::Base).lightness() < DarkLightness;
    const int hue = (FirstHue + place * HueStep) % 360;
    return isDark ? QColor::fromHsv(hue, 150, 120) : QColor::fromHsv(hue, 70, 245);
}

void BitView::setBits(const FrameBits &bits, const QVector<DatabaseSignal> &content)
{
    const bool isSameSize = bits.bitCount() == m_bits.bitCount();
    m_bits = bits;
    m_content = content;
    m_selected = bits.isThere(m_selected) ? m_selected : -1;
    if (!isSameSize) {
        m_currentBit = -1;
    }
    arrange();
    setCurrentBit(m_currentBit);
}

void BitView::select(int place)
{
    m_selected = m_bits.isThere(place) ? place : -1;
    if (m_selected >= 0 && !m_bits.isAt(m_selected, m_currentBit)) {
        setCurrentBit(m_bits.bitsOf(m_selected).front());
    }
    viewport()->update();
}

QSize BitView::sizeHint() const
{
    return {headWidth() + BitsInRow * cellWidth() + 2 * frameWidth() + verticalScrollBar()->sizeHint().width(),
            headHeight() + BitsInRow * cellHeight() + 2 * frameWidth()};
}

int BitView::cellWidth() const
{
    const int least = fontMetrics().horizontalAdvance(QStringLiteral("000 0")) + 4;
    return std::max(least, (viewport()->width() - headWidth()) / BitsInRow);
}

int BitView::cellHeight() const
{
    return fontMetrics().height() * 2 + 4;
}

int BitView::headWidth() const
{
    return fontMetrics().horizontalAdvance(QStringLiteral("00  00 "));
}

int BitView::headHeight() const
{
    return fontMetrics().height() + 4;
}

void BitView::arrange()
{
    const int rows = m_bits.bitCount() / BitsInRow;
    verticalScrollBar()->setRange(0, std::max(0, headHeight() + rows * cellHeight() - viewport()->height()));
    verticalScrollBar()->setPageStep(viewport()->height());
    verticalScrollBar()->setSingleStep(cellHeight());
    horizontalScrollBar()->setRange(0, std::max(0, headWidth() + BitsInRow * cellWidth() - viewport()->width()));
    horizontalScrollBar()->setPageStep(viewport()->width());
    horizontalScrollBar()->setSingleStep(cellWidth());
    viewport()->update();
}

QRect BitView::bitRect(int bit) const
{
    if (bit < 0 || bit >= m_bits.bitCount()) {
        return {};
    }
    return {headWidth() + columnOf(bit) * cellWidth() - horizontalScrollBar()->value(),
            headHeight() + bit / BitsInRow * cellHeight() - verticalScrollBar()->value(), cellWidth(), cellHeight()};
}

int BitView::bitAt(const QPoint &place) const
{
    const int x = place.x() + horizontalScrollBar()->value() - headWidth();
    const int y = place.y() + verticalScrollBar()->value() - headHeight();
    if (place.y() < headHeight() || x < 0 || x >= BitsInRow * cellWidth()) {
        return -1;
    }
    const int bit = y / cellHeight() * BitsInRow + BitsInRow - 1 - x / cellWidth();
    return bit < m_bits.bitCount() ? bit : -1;
}

const DatabaseSignal *BitView::signalAt(int bit) const
{
    const int place = m_bits.at(bit);
    return place >= 0 ? &m_content[place] : nullptr;
}

QString BitView::bitText(int bit) const
{
    const DatabaseSignal *signal = signalAt(bit);
    const QString where =
        tr("Byte %1, bit %2: %3").arg(bit / BitsInRow).arg(bit % BitsInRow).arg(m_bits.isSet(bit) ? 1 : 0);
    return signal != nullptr ? where + QStringLiteral(", ") + signal->name : where;
}

void BitView::setCurrentBit(int bit)
{
    m_currentBit = bit;
    setAccessibleDescription(bit >= 0 ? bitText(bit) : QString());
    viewport()->update();
    if (bit < 0) {
        return;
    }
    const QRect cell = bitRect(bit);
    QScrollBar &bar = *verticalScrollBar();
    if (cell.top() < headHeight()) {
        bar.setValue(bar.value() + cell.top() - headHeight());
    } else if (cell.bottom() >= viewport()->height()) {
        bar.setValue(bar.value() + cell.bottom() + 1 - viewport()->height());
    }
}

void BitView::paintHead(QPainter &painter) const
{
    painter.setPen(palette().color(QPalette::PlaceholderText));
    for (int bit = 0; bit < BitsInRow; ++bit) {
        painter.drawText(QRect(headWidth() + columnOf(bit) * cellWidth() - horizontalScrollBar()->value(), 0,
                               cellWidth(), headHeight()),
                         Qt::AlignCenter, QString::number(bit));
    }
}

void BitView::paintBit(QPainter &painter, int bit) const
{
    const QRect cell = bitRect(bit);
    const int place = m_bits.at(bit);
    if (place >= 0) {
        painter.fillRect(cell, colour(place, palette()));
    }
    painter.setPen(palette().color(QPalette::Mid));
    painter.drawRect(cell.adjusted(0, 0, -1, -1));
    QRect upper = cell.adjusted(3, 2, -3, 0);
    upper.setHeight(fontMetrics().height());
    QColor quiet = palette().color(QPalette::Text);
    quiet.setAlpha(140);
    painter.setPen(quiet);
    painter.drawText(upper, Qt::AlignLeft | Qt::AlignVCenter, QString::number(bit));
    painter.setPen(palette().color(QPalette::Text));
    painter.drawText(upper, Qt::AlignRight | Qt::AlignVCenter,
                     m_bits.isSet(bit) ? QStringLiteral("1") : QStringLiteral("0"));
}

/// The name of a signal stands below its bits, once in a row, as far as there is room.
void BitView::paintNames(QPainter &painter, int byte) const
{
    painter.setPen(palette().color(QPalette::Text));
    for (int column = 0; column < BitsInRow;) {
        const int first = byte * BitsInRow + BitsInRow - 1 - column;
        const int place = m_bits.at(first);
        int end = column + 1;
        while (end < BitsInRow && m_bits.at(first - (end - column)) == place) {
            ++end;
        }
        if (place >= 0) {
            QRect room = bitRect(first);
            room.setWidth((end - column) * cellWidth());
            room.adjust(3, fontMetrics().height() + 2, -3, -3);
            painter.fillRect(room, colour(place, palette())); // over the lines between the bits
            painter.drawText(room, Qt::AlignCenter,
                             fontMetrics().elidedText(m_content[place].name, Qt::ElideRight, room.width()));
        }
        column = end;
    }
}

/// Around all bits of the selected signal.
void BitView::paintBorder(QPainter &painter, int bit) const
{
    const auto isInside = [this](int other) {
        return m_bits.isAt(m_selected, other);
    };
    const QRect cell = bitRect(bit);
    const int column = columnOf(bit);
    painter.setPen(QPen(palette().color(QPalette::Highlight), 3));
    if (column == 0 || !isInside(bit + 1)) {
        painter.drawLine(cell.left() + 1, cell.top() + 1, cell.left() + 1, cell.bottom());
    }
    if (column == BitsInRow - 1 || !isInside(bit - 1)) {
        painter.drawLine(cell.right(), cell.top() + 1, cell.right(), cell.bottom());
    }
    if (!isInside(bit - BitsInRow)) {
        painter.drawLine(cell.left() + 1, cell.top() + 1, cell.right(), cell.top() + 1);
    }
    if (!isInside(bit + BitsInRow)) {
        painter.drawLine(cell.left() + 1, cell.bottom(), cell.right(), cell.bottom());
    }
}

void BitView::paintEvent(QPaintEvent * /*event*/)
{
    QPainter painter(viewport());
    const int rows = m_bits.bitCount() / BitsInRow;
    const int first = verticalScrollBar()->value() / cellHeight();
    const int end = std::min(rows, first + viewport()->height() / cellHeight() + 2);
    painter.setClipRect(0, headHeight(), viewport()->width(), viewport()->height());
    for (int byte = first; byte < end; ++byte) {
        for (int bit = byte * BitsInRow; bit < (byte + 1) * BitsInRow; ++bit) {
            paintBit(painter, bit);
        }
        paintNames(painter, byte);
        const QRect row = bitRect(byte * BitsInRow + BitsInRow - 1);
        painter.setPen(palette().color(QPalette::Text));
        painter.drawText(QRect(row.left() - headWidth(), row.top(), headWidth() - 4, row.height()),
                         Qt::AlignRight | Qt::AlignVCenter,
                         QStringLiteral("%1  %2").arg(byte).arg(
                             QString::number(m_bits.byte(byte), 16).rightJustified(2, QLatin1Char('0')).toUpper()));
    }
    const std::vector<int> &marked = m_bits.bitsOf(m_selected);
    std::for_each(marked.begin(), marked.end(), [&](int bit) { paintBorder(painter, bit); });
    if (hasFocus() && m_currentBit >= 0) {
        painter.setPen(QPen(palette().color(QPalette::Text), 1, Qt::DotLine));
        painter.drawRect(bitRect(m_currentBit).adjusted(3, 3, -4, -4));
    }
    painter.setClipping(false);
    paintHead(painter);
}

void BitView::resizeEvent(QResizeEvent *event)
{
    QAbstractScrollArea::resizeEvent(event);
    arrange();
}

void BitView::keyPressEvent(QKeyEvent *event)
{
    const int step = stepOf(event->key());
    const int last = m_bits.bitCount() - 1;
    const bool isEnd = event->key() == Qt::Key_End;
    if (last < 0 || (step == 0 && !isEnd && event->key() != Qt::Key_Home)) {
        QAbstractScrollArea::keyPressEvent(event);
        return;
    }
    // From the first byte's highest bit to the last one's lowest.
    const int wanted = step == 0          ? (isEnd ? last - (BitsInRow - 1) : BitsInRow - 1)
                       : m_currentBit < 0 ? BitsInRow - 1
                                          : m_currentBit + step;
    if (wanted >= 0 && wanted <= last) {
        setCurrentBit(wanted);
        m_selected = m_bits.at(wanted);
        emit sig_selected(m_selected);
    }
}

/// A further click goes on to the next of the signals that take the same bit.
void BitView::mousePressEvent(QMouseEvent *event)
{
    const int bit = bitAt(event->pos());
    if (event->button() != Qt::LeftButton || bit < 0) {
        return;
    }
    const std::vector<int> &there = m_bits.allAt(bit);
    const auto now = bit == m_currentBit ? std::find(there.begin(), there.end(), m_selected) : there.end();
    m_selected = now != there.end() && now + 1 != there.end() ? *(now + 1) : m_bits.at(bit);
    setCurrentBit(bit);
    emit sig_selected(m_selected);
}

bool BitView::viewportEvent(QEvent *event)
{
    if (event->type() == QEvent::ToolTip) {
        const auto *help = static_cast<QHelpEvent *>(event);
        const int bit = bitAt(help->pos());
        const DatabaseSignal *signal = bit >= 0 ? signalAt(bit) : nullptr;
        QToolTip::showText(help->globalPos(),
                           bit < 0 ? QString()
                           : signal != nullptr && !signal->comment.isEmpty()
                               ? bitText(bit) + QLatin1Char('\n') + signal->comment
                               : bitText(bit),
                           viewport());
        return true;
    }
    return QAbstractScrollArea::viewportEvent(event);
}

void BitView::changeEvent(QEvent *event)
{
    QAbstractScrollArea::changeEvent(event);
    if (event->type() == QEvent::FontChange || event->type() == QEvent::StyleChange) {
        arrange();
    }
}

void BitView::focusInEvent(QFocusEvent *event)
{
    QAbstractScrollArea::focusInEvent(event);
    viewport()->update();
}

void BitView::focusOutEvent(QFocusEvent *event)
{
    QAbstractScrollArea::focusOutEvent(event);
    viewport()->update();
}
