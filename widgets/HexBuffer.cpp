#include "widgets/HexBuffer.h"

#include "widgets/StateStep.h"

#include <algorithm>

void HexBuffer::setData(const QByteArray &data)
{
    m_state = {data};
    m_history.clear();
}

void HexBuffer::moveTo(int nibble, bool extend)
{
    const int target = std::clamp(nibble, 0, 2 * size());
    if (extend) {
        select(m_state.anchor == NoAnchor ? m_state.cursor / 2 : m_state.anchor, target / 2);
    } else {
        m_state.anchor = NoAnchor;
        m_state.cursor = target;
    }
}

void HexBuffer::select(int anchor, int head)
{
    m_state.anchor = std::clamp(anchor, 0, size());
    m_state.cursor = 2 * std::clamp(head, 0, size());
}

HexBuffer::Range HexBuffer::selection() const
{
    const int head = m_state.cursor / 2;
    const int anchor = m_state.anchor == NoAnchor ? head : m_state.anchor;
    return {std::min(anchor, head), std::max(anchor, head)};
}

QByteArray HexBuffer::selectedBytes() const
{
    const Range range = selection();
    return data().mid(range.first, range.count());
}

void HexBuffer::typeDigit(int value)
{
    const Range range = selection();
    if (range.first >= size()) {
        return;
    }
    const int nibble = range.isEmpty() ? cursor() : 2 * range.first;
    const int old = static_cast<unsigned char>(data().at(range.first));
    const int byte = nibble % 2 != 0 ? (old & 0xF0) | value : (value << 4) | (old & 0x0F);
    put(range.first, QByteArray(1, static_cast<char>(byte)), nibble + 1);
}

void HexBuffer::write(const QByteArray &bytes)
{
    const int first = selection().first;
    const QByteArray fitting = bytes.left(size() - first);
    put(first, fitting, 2 * (first + fitting.size()));
}

void HexBuffer::removeForward()
{
    Range range = selection();
    if (range.isEmpty()) {
        range.end = std::min(range.first + 1, size());
    }
    clear(range);
}

void HexBuffer::removeBackward()
{
    Range range = selection();
    if (range.isEmpty() && cursor() % 2 != 0) {
        range.end = range.first + 1;
    } else if (range.isEmpty()) {
        range.first = std::max(0, range.first - 1);
    }
    clear(range);
}

void HexBuffer::fill(char byte)
{
    put(0, QByteArray(size(), byte), 0);
}

void HexBuffer::clear(Range range)
{
    put(range.first, QByteArray(range.count(), '\0'), 2 * range.first);
}

void HexBuffer::put(int first, const QByteArray &bytes, int cursor)
{
    const State before{data(), this->cursor()};
    State after{data(), cursor};
    after.data.replace(first, bytes.size(), bytes);
    if (after.data == before.data) {
        m_state = after;
    } else {
        m_history.push(new StateStep<State>(before, after, [this](const State &state) { m_state = state; }));
    }
}
