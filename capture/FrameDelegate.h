#pragma once

#include <QFont>
#include <QStyledItemDelegate>

#include <memory>

class FrameDelegatePrivate;

/// Paints the cells of the frame table in one font: text only, left-aligned, cut with an ellipsis where the cell ends,
/// in the place where a standard item stands. The background is the view's. Text of plain ASCII is drawn from glyphs
/// that were looked up once; other text is laid out once and remembered.
class FrameDelegate : public QStyledItemDelegate
{
    Q_OBJECT

public:
    explicit FrameDelegate(const QFont &font, QObject *parent = nullptr);
    ~FrameDelegate() override;

    void paint(QPainter *painter, const QStyleOptionViewItem &option, const QModelIndex &index) const override;
    /// As wide as the whole text, so that a double click on a header's border shows it.
    QSize sizeHint(const QStyleOptionViewItem &option, const QModelIndex &index) const override;
    /// A text that is cut is the tool tip of its cell.
    bool helpEvent(QHelpEvent *event, QAbstractItemView *view, const QStyleOptionViewItem &option,
                   const QModelIndex &index) override;

private:
    std::unique_ptr<FrameDelegatePrivate> m_p;
};
