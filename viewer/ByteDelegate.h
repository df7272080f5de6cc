#pragma once

#include <QStyledItemDelegate>

/// Draws bytes that stand in a cell with blanks between them, each on a colour that says what is with it.
class ByteDelegate : public QStyledItemDelegate
{
    Q_OBJECT

public:
    enum Mark : char { None, Changed, Other, MovesHere };

    /// A QByteArray of the Mark of each byte; shorter where the rest has none.
    static constexpr int MarksRole = Qt::UserRole + 100;

    using QStyledItemDelegate::QStyledItemDelegate;

    /// See-through, so it goes with light and dark windows.
    static QColor colorOf(Mark mark);
    void paint(QPainter *painter, const QStyleOptionViewItem &option, const QModelIndex &index) const override;
};
