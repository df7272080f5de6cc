#pragma once

#include "widgets/NumberEntry.h"

#include <QStyledItemDelegate>

/// Edits cells with text that is to be a number or bytes: what is typed or pasted is cleaned, and not checked.
class LINEntryDelegate : public QStyledItemDelegate
{
    Q_OBJECT

public:
    explicit LINEntryDelegate(NumberEntry kind, QObject *parent = nullptr);

    QWidget *createEditor(QWidget *parent, const QStyleOptionViewItem &option, const QModelIndex &index) const override;

private:
    const NumberEntry m_kind;
};
