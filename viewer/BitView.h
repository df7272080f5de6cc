#pragma once

#include "viewer/core/FrameBits.h"

#include <QAbstractScrollArea>

/// The bits of a frame: a row for each byte, from bit 7 to bit 0, and each signal in a colour of its own with its name.
/// Arrow keys go from bit to bit, Home and End to the first and last, and a click or a key selects the signal that is
/// there.
class BitView : public QAbstractScrollArea
{
    Q_OBJECT

public:
    explicit BitView(QWidget *parent = nullptr);

    /// content: of the message; its signals are named by their place in it.
    void setBits(const FrameBits &bits, const QVector<DatabaseSignal> &content);
    /// The selected signal, by its place in the message; -1: none.
    int selected() const { return m_selected; }
    void select(int place);
    /// That the keys move; -1 before there is one.
    int currentBit() const { return m_currentBit; }
    /// In the viewport; empty where there is no such bit.
    QRect bitRect(int bit) const;
    /// Of a signal, on windows of this palette.
    static QColor colour(int place, const QPalette &palette);

    QSize sizeHint() const override;

signals:
    /// By the user: a place in the message; -1: a bit that no signal takes.
    void sig_selected(int place);

protected:
    void paintEvent(QPaintEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;
    void mousePressEvent(QMouseEvent *event) override;
    bool viewportEvent(QEvent *event) override;
    void changeEvent(QEvent *event) override;
    void focusInEvent(QFocusEvent *event) override;
    void focusOutEvent(QFocusEvent *event) override;

private:
    void arrange();
    int cellWidth() const;
    int cellHeight() const;
    int headWidth() const;
    int headHeight() const;
    int bitAt(const QPoint &place) const;
    void setCurrentBit(int bit);
    QString bitText(int bit) const;
    void paintHead(QPainter &painter) const;
    void paintBit(QPainter &painter, int bit) const;
    void paintNames(QPainter &painter, int byte) const;
    void paintBorder(QPainter &painter, int bit) const;
    const DatabaseSignal *signalAt(int bit) const;

    FrameBits m_bits;
    QVector<DatabaseSignal> m_content;
    int m_selected = -1;
    int m_currentBit = -1;
};
