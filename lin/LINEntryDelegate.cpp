#include "lin/LINEntryDelegate.h"

#include <QLineEdit>

LINEntryDelegate::LINEntryDelegate(NumberEntry kind, QObject *parent)
    : QStyledItemDelegate(parent)
    , m_kind(kind)
{
}

QWidget *LINEntryDelegate::createEditor(QWidget *parent, const QStyleOptionViewItem &option,
                                        const QModelIndex &index) const
{
    QWidget *editor = QStyledItemDelegate::createEditor(parent, option, index);
    if (auto *field = qobject_cast<QLineEdit *>(editor)) {
        cleanEntry(field, m_kind);
    }
    return editor;
}
