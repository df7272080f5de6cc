#pragma once

#include "widgets/HexBuffer.h"
#include "widgets/HexLayout.h"

#include <QAbstractScrollArea>
#include <QByteArray>

#include <memory>

class QHexEditPrivate;

/// Hexadecimal editor: addresses, bytes as digits and as characters. Stands in for the widget of the same name of the
/// QHexEdit2 library where that is not installed, with the part of its interface that the program uses.
///
/// Tab and a click choose between digits and characters. Copying and pasting is by hexadecimal text in both; a text
/// that is none is refused. Only what is visible is painted, so a few megabytes are no burden. In overwrite mode the
/// number of bytes never changes; see HexBuffer.
class QHexEdit : public QAbstractScrollArea
{
    Q_OBJECT

public:
    explicit QHexEdit(QWidget *parent = nullptr);
    ~QHexEdit() override;

    /// Begins anew: nothing to undo, cursor at the start. At most HexBuffer::SizeMax bytes.
    void setData(const QByteArray &data);
    QByteArray data() const;

    /// At least 1.
    void setBytesPerLine(int count);
    int bytesPerLine() const;
    /// Off at first: typing inserts.
    void setOverwriteMode(bool overwrite);
    /// The user can look, select and copy; undo and redo do nothing.
    void setReadOnly(bool readOnly);
    void setAddressArea(bool visible);
    void setAsciiArea(bool visible);

    // Beyond the library's interface.

    /// Sets every byte, as one step of the history.
    void fill(char byte);
    bool canUndo() const;
    bool canRedo() const;
    HexPlace cursor() const;
    HexBuffer::Range selection() const;
    /// Where a byte stands in the viewport; empty when the area is hidden or the byte not in a visible line.
    QRect byteRect(int byte, HexArea area) const;

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

public slots:
    void undo();
    void redo();

signals:
    void dataChanged();
    void currentSizeChanged(qint64 size);

protected:
    bool focusNextPrevChild(bool next) override;
    void changeEvent(QEvent *event) override;
    void focusInEvent(QFocusEvent *event) override;
    void focusOutEvent(QFocusEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;
    void mouseDoubleClickEvent(QMouseEvent *event) override;
    void mouseMoveEvent(QMouseEvent *event) override;
    void mousePressEvent(QMouseEvent *event) override;
    void paintEvent(QPaintEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;

private:
    friend class QHexEditPrivate;
    std::unique_ptr<QHexEditPrivate> m_p;
};
