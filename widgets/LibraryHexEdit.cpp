#include "widgets/LibraryHexEdit.h"

#include "widgets/HexEntry.h"

#include <QKeyEvent>

// setData begins the editor's history anew, so the data before is kept here.
void LibraryHexEdit::clear()
{
    const QByteArray before = data();
    const QByteArray zeros(before.size(), '\0');
    if (before != zeros) {
        m_cleared = before;
        setData(zeros);
    }
}

void LibraryHexEdit::undo()
{
    const QByteArray before = data();
    QHexEdit::undo();
    // Nothing was left to undo since the clear.
    if (m_cleared && data() == before) {
        setData(*std::exchange(m_cleared, std::nullopt));
    }
}

void LibraryHexEdit::keyPressEvent(QKeyEvent *event)
{
    switch (event->key()) {
    case Qt::Key_Enter:
    case Qt::Key_Return:
    case Qt::Key_Escape:
        event->ignore(); // the dialog's
        return;
    case Qt::Key_Shift:
    case Qt::Key_Control:
    case Qt::Key_Alt:
        return; // nothing happens yet
    default:
        break;
    }
    if (event->key() == Qt::Key_Insert && event->modifiers() == Qt::NoModifier) {
        return;
    }
    const bool isTyping = bytesFromHexText(event->text()) && !event->modifiers().testFlag(Qt::ControlModifier);
    const bool wasBehindLast = m_isBehindLast && isAtLastDigit();
    m_isBehindLast = event->matches(QKeySequence::MoveToEndOfDocument) || (isTyping && isAtLastDigit());
    if (wasBehindLast && event->key() == Qt::Key_Backspace) {
        QKeyEvent clearing(QEvent::KeyPress, Qt::Key_Delete, Qt::NoModifier);
        QHexEdit::keyPressEvent(&clearing);
    } else if (!wasBehindLast || !isTyping) {
        QHexEdit::keyPressEvent(event);
    }
}

void LibraryHexEdit::mousePressEvent(QMouseEvent *event)
{
    m_isBehindLast = false;
    QHexEdit::mousePressEvent(event);
}

bool LibraryHexEdit::isAtLastDigit()
{
    return cursorPosition() == 2 * data().size() - 1;
}
