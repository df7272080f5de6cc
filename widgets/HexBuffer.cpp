#include "widgets/HexBuffer.h"

#include <QUndoCommand>

#include <algorithm>
#include <utility>

/// Bytes replaced by others.
class HexStep : public QUndoCommand
{
public:
    HexStep(HexBuffer &buffer, HexBuffer::Range range, QByteArray after, int cursorAfter)
        : m_buffer(buffer)
        , m_first(range.first)
        , m_before(buffer.data().mid(range.first, range.count()))
        , m_after(std::move(after))
        , m_cursorBefore(buffer.cursor())
        , m_cursorAfter(cursorAfter)
    {
    }
    void undo() override { m_buffer.apply(m_first, m_after.size(), m_before, m_cursorBefore); }
    void redo() override { m_buffer.apply(m_first, m_before.size(), m_after, m_cursorAfter); }

private:
    HexBuffer &m_buffer;
    int m_first;
    QByteArray m_before;
    QByteArray m_after;
    int m_cursorBefore;
    int m_cursorAfter;
};

HexBuffer::HexBuffer(std::function<void()> changed)
    : m_changed(std::move(changed))
{
}

void HexBuffer::setData(const QByteArray &data)
{
    m_history.clear();
    apply(0, m_data.size(), data.left(SizeMax), 0);
    m_changed();
}

void HexBuffer::moveTo(int nibble, bool extend)
{
    const int target = std::clamp(nibble, 0, 2 * size());
    if (extend) {
        select(m_anchor < 0 ? m_cursor / 2 : m_anchor, target / 2);
        return;
    }
    m_anchor = -1;
    m_cursor = target;
}

void HexBuffer::select(int anchor, int head)
{
    m_anchor = std::clamp(anchor, 0, size());
    m_cursor = 2 * std::clamp(head, 0, size());
}

HexBuffer::Range HexBuffer::selection() const
{
    const int head = m_cursor / 2;
    const int anchor = m_anchor < 0 ? head : m_anchor;
    return {std::min(anchor, head), std::max(anchor, head)};
}

QByteArray HexBuffer::selectedBytes() const
{
    const Range range = selection();
    return m_data.mid(range.first, range.count());
}

void HexBuffer::typeDigit(int value)
{
    const Range range = selection();
    const bool isSecond = range.isEmpty() && m_cursor % 2 != 0;
    if (!m_overwrite && !isSecond) {
        replace(range, QByteArray(1, static_cast<char>(value << 4)), 2 * range.first + 1);
        return;
    }
    if (range.first >= size()) {
        return;
    }
    const int old = static_cast<unsigned char>(m_data.at(range.first));
    const int byte = isSecond ? (old & 0xF0) | value : (value << 4) | (old & 0x0F);
    replace({range.first, range.first + 1}, QByteArray(1, static_cast<char>(byte)),
            2 * range.first + (isSecond ? 2 : 1));
}

void HexBuffer::typeByte(char byte)
{
    paste(QByteArray(1, byte));
}

void HexBuffer::paste(const QByteArray &bytes)
{
    Range range = selection();
    const int room = m_overwrite ? size() - range.first : SizeMax - size() + range.count();
    const QByteArray fitting = bytes.left(room);
    if (m_overwrite) {
        range.end = range.first + fitting.size();
    }
    replace(range, fitting, 2 * (range.first + fitting.size()));
}

void HexBuffer::removeForward()
{
    Range range = selection();
    if (range.isEmpty()) {
        range.end = std::min(range.first + 1, size());
    }
    remove(range);
}

void HexBuffer::removeBackward()
{
    Range range = selection();
    if (range.isEmpty() && m_cursor % 2 != 0) {
        range.end = range.first + 1; // the byte half typed
    } else if (range.isEmpty()) {
        range.first = std::max(0, range.first - 1);
    }
    remove(range);
}

void HexBuffer::remove(Range range)
{
    replace(range, m_overwrite ? QByteArray(range.count(), '\0') : QByteArray(), 2 * range.first);
}

void HexBuffer::fill(char byte)
{
    replace({0, size()}, QByteArray(size(), byte), 0);
}

void HexBuffer::undo()
{
    if (m_history.canUndo()) {
        m_history.undo();
        m_changed();
    }
}

void HexBuffer::redo()
{
    if (m_history.canRedo()) {
        m_history.redo();
        m_changed();
    }
}

void HexBuffer::replace(Range range, const QByteArray &bytes, int cursor)
{
    if (m_data.mid(range.first, range.count()) == bytes) {
        m_anchor = -1;
        m_cursor = cursor;
        return;
    }
    m_history.push(new HexStep(*this, range, bytes, cursor));
    m_changed();
}

void HexBuffer::apply(int first, int count, const QByteArray &bytes, int cursor)
{
    m_data.replace(first, count, bytes);
    m_anchor = -1;
    m_cursor = cursor;
}
