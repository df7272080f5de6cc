#pragma once

#include "widgets/HexBuffer.h"
#include "widgets/HexLayout.h"

#include <QAbstractScrollArea>
#include <QByteArray>

class QPainter;

/// Hexadecimal editor: addresses, bytes as digits and as characters. Stands in for the widget of the same name of the
/// QHexEdit2 library where that is not installed, with the part of its interface that the program uses.
///
/// Tab and a click choose between digits and characters. Copying and pasting is by hexadecimal text in both; a text
/// that is none is refused. Typing overwrites, and the number of bytes never changes; see HexBuffer.
class QHexEdit : public QAbstractScrollArea
{
    Q_OBJECT

public:
    explicit QHexEdit(QWidget *parent = nullptr);
    ~QHexEdit() override;

    /// Begins anew: nothing to undo, cursor at the start. At most 65536 bytes. Without dataChanged().
    void setData(const QByteArray &data);
    QByteArray data() const { return m_buffer.data(); }

    /// At least 1.
    void setBytesPerLine(int count);
    /// The user can look, select and copy; undo and redo do nothing.
    void setReadOnly(bool readOnly) { m_readOnly = readOnly; }

    // Beyond the library's interface.

    bool canUndo() const { return !m_readOnly && m_buffer.history().canUndo(); }
    bool canRedo() const { return !m_readOnly && m_buffer.history().canRedo(); }
    HexPlace cursor() const { return {m_area, m_buffer.cursor()}; }
    HexBuffer::Range selection() const { return m_buffer.selection(); }
    /// Where a byte, or the place behind the last one, stands in the viewport or beside it.
    QRect byteRect(int byte, HexArea area) const;

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

public slots:
    void undo();
    void redo();
    /// Sets every byte to zero, as one step of the history.
    void clear() { m_buffer.fill('\0'); }

signals:
    void dataChanged();

protected:
    bool focusNextPrevChild(bool next) override;
    void focusInEvent(QFocusEvent *event) override;
    void focusOutEvent(QFocusEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;
    void mouseDoubleClickEvent(QMouseEvent *event) override;
    void mouseMoveEvent(QMouseEvent *event) override;
    void mousePressEvent(QMouseEvent *event) override;
    void paintEvent(QPaintEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;

private:
    int charWidth() const;
    int lineHeight() const;
    int visibleLines() const;
    QRect cells(int line, int column, int count) const;
    HexPlace placeAt(QPoint position) const;
    void updateScrollBars();
    void showCursor();
    void setArea(HexArea area);

    bool handleMove(const QKeyEvent &event);
    bool handleCommand(const QKeyEvent &event);
    bool handleEdit(const QKeyEvent &event);
    bool handleText(const QKeyEvent &event);
    void copy() const;

    QString textOf(int byte, HexArea area) const;
    void paintByte(QPainter &painter, int byte, HexArea area) const;
    void paintCursor(QPainter &painter) const;

    HexBuffer m_buffer;
    HexLayout m_layout;
    HexArea m_area = HexArea::Hex;
    bool m_readOnly = false;
    int m_draggedByte = 0; ///< where the mouse button went down
};
