#include "lin/WidgetDelegate.h"

#include <QComboBox>
#include <QString>
#include <QVector>

WidgetDelegate::WidgetDelegate(QObject *parent)
    : QStyledItemDelegate(parent)
{
    qRegisterMetaType<QVector<QString>>();
}

QWidget *WidgetDelegate::createEditor(QWidget *parent, const QStyleOptionViewItem & /*option*/,
                                      const QModelIndex &index) const
{
    const auto choices = index.data(ChoicesRole).value<QVector<QString>>();
    if (choices.isEmpty()) {
        return nullptr;
    }
    auto *combo = new QComboBox(parent);
    combo->setFrame(false);
    for (int i = 0; i < choices.size(); ++i) {
        combo->addItem(choices.at(i), i);
    }
    return combo;
}

void WidgetDelegate::setEditorData(QWidget *editor, const QModelIndex &index) const
{
    if (auto *combo = qobject_cast<QComboBox *>(editor)) {
        combo->setCurrentIndex(index.data(ChosenRole).toInt());
    }
}

void WidgetDelegate::setModelData(QWidget *editor, QAbstractItemModel *model, const QModelIndex &index) const
{
    const auto *combo = qobject_cast<QComboBox *>(editor);
    if (combo != nullptr && combo->currentIndex() >= 0) {
        model->setData(index, combo->currentData(), ChosenRole);
        model->setData(index, combo->currentText(), Qt::EditRole);
    }
}
