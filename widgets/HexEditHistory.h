#pragma once

#include <QByteArray>

#include <optional>

class QHexEdit;

/// What the "Edit data" dialog does with the history of its editor. Two sources implement it, and CMake takes the one
/// for the editor of the build: the project's own, or the library's, whose interface says nothing about its history and
/// whose keys are put right besides.
class HexEditHistory
{
public:
    /// editor must outlive this.
    explicit HexEditHistory(QHexEdit &editor);

    /// Sets every byte to zero; one undo brings them back.
    void clear();
    void undo();
    void redo();
    /// With the library's editor always true.
    bool canUndo() const;
    bool canRedo() const;

private:
    QHexEdit &m_editor;
    std::optional<QByteArray> m_cleared; ///< what a clear took away; with the library's editor only
};
