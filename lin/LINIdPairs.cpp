#include "lin/LINIdPairs.h"

#include <QCheckBox>
#include <QGridLayout>

LINIdPairs::LINIdPairs(QGridLayout &grid, int count, int perRow)
{
    QWidget *owner = grid.parentWidget();
    for (int i = 0; i < count; ++i) {
        const QString name = QStringLiteral("ID%1").arg(i + 1);
        auto *check = new QCheckBox(name + QLatin1Char(':'), owner);
        check->setObjectName(QStringLiteral("chbx_") + name);
        auto *id = new LINIdSpinBox(owner);
        id->setObjectName(QStringLiteral("sbx_") + name);
        const int row = i / perRow;
        const int column = i % perRow * 2;
        grid.addWidget(check, row, column);
        grid.addWidget(id, row, column + 1);
        m_pairs.append({check, id});
    }
}

QVector<quint8> LINIdPairs::checkedIds() const
{
    QVector<quint8> ids;
    for (const Pair &pair : m_pairs) {
        if (pair.check->isChecked()) {
            ids.append(pair.id->id());
        }
    }
    return ids;
}

void LINIdPairs::setEnabled(bool enabled)
{
    for (const Pair &pair : m_pairs) {
        pair.check->setEnabled(enabled);
        pair.id->setEnabled(enabled);
    }
}

void LINIdPairs::setWrapping(bool wrapping)
{
    for (const Pair &pair : m_pairs) {
        pair.id->setWrapping(wrapping);
    }
}

void LINIdPairs::setTabOrderAfter(QWidget *control) const
{
    QWidget *previous = control;
    for (const Pair &pair : m_pairs) {
        QWidget::setTabOrder(previous, pair.check);
        QWidget::setTabOrder(pair.check, pair.id);
        previous = pair.id;
    }
}
