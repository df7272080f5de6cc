#include "widgets/HexEditHistory.h"

#include <qhexedit.h>

HexEditHistory::HexEditHistory(QHexEdit &editor)
    : m_editor(editor)
{
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
