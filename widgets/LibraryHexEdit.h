#pragma once

#include <qhexedit.h>

#include <optional>

/// The library's editor as the dialog "Edit data" needs it. The library keeps Enter and Esc to itself, leaves its
/// overwriting at the key Insert, and has no place behind the last digit: what is typed there would change that digit
/// again, and Backspace would clear the byte before the last. Its interface says nothing about its history.
class LibraryHexEdit : public QHexEdit
{
public:
    using QHexEdit::QHexEdit;

    /// Sets every byte to zero. Ends the history of earlier edits; undo brings the bytes back.
    void clear();
    void undo();

    static bool canUndo() { return true; }
    static bool canRedo() { return true; }

protected:
    void keyPressEvent(QKeyEvent *event) override;
    void mousePressEvent(QMouseEvent *event) override;

private:
    bool isAtLastDigit();

    std::optional<QByteArray> m_cleared;
    bool m_isBehindLast = false; ///< the cursor is meant to be there
};
