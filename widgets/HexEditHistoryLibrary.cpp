#include "widgets/HexEditHistory.h"

#include <qhexedit.h>

#include <QCoreApplication>
#include <QKeyEvent>

namespace {
/// The library's editor keeps Enter and Esc to itself, leaves its overwriting at the key Insert, and has no place
/// behind the last digit: what is typed there would change that digit again, and Backspace would clear the byte before
/// the last.
class EditorKeys : public QObject
{
public:
    explicit EditorKeys(QHexEdit &editor)
        : QObject(&editor)
        , m_editor(editor)
    {
        editor.installEventFilter(this);
        editor.viewport()->installEventFilter(this);
    }

    bool eventFilter(QObject *watched, QEvent *event) override
    {
        if (event->type() == QEvent::MouseButtonPress) {
            m_isBehindLast = false;
        }
        return watched == &m_editor && event->type() == QEvent::KeyPress && takesKey(*static_cast<QKeyEvent *>(event));
    }

private:
    bool takesKey(QKeyEvent &event)
    {
        switch (event.key()) {
        case Qt::Key_Enter:
        case Qt::Key_Return:
        case Qt::Key_Escape:
            event.ignore(); // the dialog's
            return true;
        case Qt::Key_Insert:
            return event.modifiers() == Qt::NoModifier;
        case Qt::Key_Shift:
        case Qt::Key_Control:
        case Qt::Key_Alt:
            return false; // nothing happens yet
        default:
            return takesKeyAtTheEnd(event);
        }
    }

    bool takesKeyAtTheEnd(const QKeyEvent &event)
    {
        const bool wasBehindLast = m_isBehindLast && isAtLastDigit();
        const bool isTyping = isDigit(event);
        m_isBehindLast = event.matches(QKeySequence::MoveToEndOfDocument) || (isTyping && isAtLastDigit());
        if (wasBehindLast && event.key() == Qt::Key_Backspace) {
            QKeyEvent clearing(QEvent::KeyPress, Qt::Key_Delete, Qt::NoModifier);
            QCoreApplication::sendEvent(&m_editor, &clearing);
            return true;
        }
        return wasBehindLast && isTyping;
    }

    static bool isDigit(const QKeyEvent &event)
    {
        bool isHexadecimal = false;
        event.text().toInt(&isHexadecimal, 16);
        return isHexadecimal && !event.modifiers().testFlag(Qt::ControlModifier);
    }

    bool isAtLastDigit() const
    {
        return m_editor.property("cursorPosition").toLongLong() == 2 * qint64(m_editor.data().size()) - 1;
    }

    QHexEdit &m_editor;
    bool m_isBehindLast = false; ///< the cursor is meant to be there
};
} // namespace

HexEditHistory::HexEditHistory(QHexEdit &editor)
    : m_editor(editor)
{
    new EditorKeys(editor);
}

// setData begins the editor's history anew, so the data before is kept here.
void HexEditHistory::clear()
{
    const QByteArray data = m_editor.data();
    const QByteArray zeros(data.size(), '\0');
    if (data != zeros) {
        m_cleared = data;
        m_editor.setData(zeros);
    }
}

void HexEditHistory::undo()
{
    const QByteArray data = m_editor.data();
    m_editor.undo();
    // Nothing was left to undo since the clear.
    if (m_cleared && m_editor.data() == data) {
        const QByteArray before = *m_cleared;
        m_cleared.reset();
        m_editor.setData(before);
    }
}

void HexEditHistory::redo()
{
    m_editor.redo();
}

bool HexEditHistory::canUndo() const
{
    return true;
}

bool HexEditHistory::canRedo() const
{
    return true;
}
