#pragma once

#include <QStyledItemDelegate>

/// Edits the cells of the send list. Each cell has its value under Qt::UserRole, which the editor shows and changes
/// together with the cell's text: the identifier, type, length, counts and interval as numbers, the data as digits
/// without white space.
class WidgetDelegateCAN : public QStyledItemDelegate
{
    Q_OBJECT

public:
    enum Column { Tick, Number, Id, Type, Length, Data, FrameCount, SendCount, Interval, ColumnCount };
    /// Values of the type column.
    enum FrameType { Standard, Extended };

    using QStyledItemDelegate::QStyledItemDelegate;

    static QString typeText(FrameType type);

    QWidget *createEditor(QWidget *parent, const QStyleOptionViewItem &option, const QModelIndex &index) const override;
    void setEditorData(QWidget *editor, const QModelIndex &index) const override;
    void setModelData(QWidget *editor, QAbstractItemModel *model, const QModelIndex &index) const override;
    /// As wide as the cell, or wider where the editor would be cut off.
    void updateEditorGeometry(QWidget *editor, const QStyleOptionViewItem &option,
                              const QModelIndex &index) const override;
};
