#include "widgets/HexEditHistory.h"

#include "widgets/QHexEdit.h"

HexEditHistory::HexEditHistory(QHexEdit &editor)
    : m_editor(editor)
{
}

void HexEditHistory::clear()
{
    m_editor.fill('\0');
}

void HexEditHistory::undo()
{
    m_editor.undo();
}

void HexEditHistory::redo()
{
    m_editor.redo();
}

bool HexEditHistory::canUndo() const
{
    return m_editor.canUndo();
}

bool HexEditHistory::canRedo() const
{
    return m_editor.canRedo();
}
