#pragma once

#include <QStyledItemDelegate>

/// Edits cells that are a choice from a list with a combo box. Such a cell keeps its choices, a QVector<QString>, in
/// ChoicesRole, the position of the chosen one in ChosenRole and the chosen text as its text.
class WidgetDelegate : public QStyledItemDelegate
{
    Q_OBJECT

public:
    static constexpr int ChosenRole = Qt::UserRole;
    static constexpr int ChoicesRole = Qt::UserRole + 1;

    explicit WidgetDelegate(QObject *parent = nullptr);

    /// Null for a cell without choices.
    QWidget *createEditor(QWidget *parent, const QStyleOptionViewItem &option, const QModelIndex &index) const override;
    void setEditorData(QWidget *editor, const QModelIndex &index) const override;
    void setModelData(QWidget *editor, QAbstractItemModel *model, const QModelIndex &index) const override;
};
