#pragma once

#include <QByteArray>
#include <QUndoStack>

/// The bytes of a hexadecimal editor with cursor, selection and history, apart from any window. Their number never
/// changes: what would be removed becomes zero, what would reach beyond the end is dropped. Each edit that changes
/// anything is one step of the history.
class HexBuffer
{
public:
    /// Half-open range of bytes.
    struct Range
    {
        int first = 0;
        int end = 0;
        int count() const { return end - first; }
        bool isEmpty() const { return first == end; }
    };

    /// Begins anew: history empty, cursor at the start.
    void setData(const QByteArray &data);
    const QByteArray &data() const { return m_state.data; }
    int size() const { return m_state.data.size(); }

    /// In nibbles, 0 to 2 * size.
    int cursor() const { return m_state.cursor; }
    /// Extending a selection moves by whole bytes.
    void moveTo(int nibble, bool extend);
    /// The cursor stands at head, before or behind the anchor.
    void select(int anchor, int head);
    /// Empty, at the cursor's byte, when nothing is selected.
    Range selection() const;
    QByteArray selectedBytes() const;

    /// A digit of 0 to 15 at the cursor or over the first digit of the selection.
    void typeDigit(int value);
    /// Over what stands from the cursor or the selection's start on.
    void write(const QByteArray &bytes);
    /// The selection, else the byte at the cursor.
    void removeForward();
    /// The selection, else the byte that is half typed, else the one before the cursor.
    void removeBackward();
    void fill(char byte);

    /// indexChanged() comes with each change of the bytes but setData.
    QUndoStack &history() { return m_history; }
    const QUndoStack &history() const { return m_history; }

private:
    static constexpr int NoAnchor = -1;

    struct State
    {
        QByteArray data;
        int cursor = 0;
        int anchor = NoAnchor; ///< byte where the selection began
    };

    void put(int first, const QByteArray &bytes, int cursor);
    void clear(Range range);

    State m_state;
    QUndoStack m_history;
};
