#pragma once

#include <QByteArray>
#include <QUndoStack>

#include <functional>

/// The bytes of a hexadecimal editor with cursor, selection and history, apart from any window.
///
/// In overwrite mode no edit changes the number of bytes: what would be removed becomes zero, what would reach beyond
/// the end is dropped.
class HexBuffer
{
public:
    /// Bytes held at most; more is cut. Twice as many still count in an int.
    static constexpr int SizeMax = 512 * 1024 * 1024;

    /// Half-open range of bytes.
    struct Range
    {
        int first = 0;
        int end = 0;
        int count() const { return end - first; }
        bool isEmpty() const { return first == end; }
    };

    /// changed is called after each change of the bytes, when the history knows of it.
    explicit HexBuffer(std::function<void()> changed);

    /// Begins anew: history empty, cursor at the start.
    void setData(const QByteArray &data);
    const QByteArray &data() const { return m_data; }
    int size() const { return m_data.size(); }

    void setOverwriteMode(bool overwrite) { m_overwrite = overwrite; }
    bool isOverwriteMode() const { return m_overwrite; }

    /// In nibbles, 0 to 2 * size.
    int cursor() const { return m_cursor; }
    /// Extending a selection moves by whole bytes.
    void moveTo(int nibble, bool extend);
    /// The cursor stands at head, before or behind the anchor.
    void select(int anchor, int head);
    /// Empty, at the cursor's byte, when nothing is selected.
    Range selection() const;
    QByteArray selectedBytes() const;

    /// A digit of 0 to 15 at the cursor; in insert mode the first digit of a byte inserts it.
    void typeDigit(int value);
    void typeByte(char byte);
    /// Puts bytes in place of the selection; in overwrite mode over what stands there.
    void paste(const QByteArray &bytes);
    void removeForward();
    void removeBackward();
    void fill(char byte);

    void undo();
    void redo();
    const QUndoStack &history() const { return m_history; }

private:
    friend class HexStep;
    /// One step of the history, unless it would change nothing.
    void replace(Range range, const QByteArray &bytes, int cursor);
    void apply(int first, int count, const QByteArray &bytes, int cursor);
    void remove(Range range);

    QByteArray m_data;
    std::function<void()> m_changed;
    int m_cursor = 0;
    int m_anchor = -1; ///< byte where the selection began, -1 for none
    bool m_overwrite = true;
    QUndoStack m_history;
};
