#include "viewer/ColumnsDialog.h"

#include <QDialogButtonBox>
#include <QHBoxLayout>
#include <QListWidget>
#include <QPushButton>
#include <QVBoxLayout>

namespace {

enum Role { ColumnRole = Qt::UserRole, WidthRole };

} // namespace

ColumnsDialog::ColumnsDialog(const ColumnLayout &layout, QWidget *parent)
    : QDialog(parent)
    , m_list(new QListWidget)
    , m_up(new QPushButton(tr("&Up")))
    , m_down(new QPushButton(tr("&Down")))
{
    setWindowTitle(tr("Columns"));
    m_list->setObjectName(QStringLiteral("columns"));
    m_up->setObjectName(QStringLiteral("up"));
    m_down->setObjectName(QStringLiteral("down"));
    auto *standard = new QPushButton(tr("&Standard"));
    standard->setObjectName(QStringLiteral("standard"));
    for (QPushButton *button : {m_up, m_down, standard}) {
        button->setAutoDefault(false); // Return is OK
    }
    auto *side = new QVBoxLayout;
    side->addWidget(m_up);
    side->addWidget(m_down);
    side->addStretch();
    side->addWidget(standard);
    auto *top = new QHBoxLayout;
    top->addWidget(m_list);
    top->addLayout(side);
    auto *buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel);
    m_ok = buttons->button(QDialogButtonBox::Ok);
    auto *all = new QVBoxLayout(this);
    all->addLayout(top);
    all->addWidget(buttons);
    connect(m_up, &QPushButton::clicked, this, [this] { moveBy(-1); });
    connect(m_down, &QPushButton::clicked, this, [this] { moveBy(1); });
    connect(standard, &QPushButton::clicked, this, [this] { fill({}); });
    connect(m_list, &QListWidget::currentRowChanged, this, &ColumnsDialog::slot_update);
    connect(m_list, &QListWidget::itemChanged, this, &ColumnsDialog::slot_update);
    connect(buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    fill(layout);
    resize(fontMetrics().averageCharWidth() * 50, fontMetrics().height() * 26);
}

void ColumnsDialog::fill(const ColumnLayout &layout)
{
    m_list->clear();
    for (const ColumnLayout::Column &column : layout.columns()) {
        auto *item = new QListWidgetItem(FrameColumns::title(column.column), m_list);
        item->setData(ColumnRole, static_cast<int>(column.column));
        item->setData(WidthRole, column.width);
        if (column.column == FrameColumn::SinceMark) { // comes and goes with the mark
            item->setFlags(item->flags() & ~Qt::ItemIsUserCheckable);
            item->setToolTip(tr("Shown while a frame is marked as time zero."));
        } else {
            item->setCheckState(column.isShown ? Qt::Checked : Qt::Unchecked);
        }
    }
    m_list->setCurrentRow(0);
}

void ColumnsDialog::moveBy(int step)
{
    const int row = m_list->currentRow();
    QListWidgetItem *item = m_list->takeItem(row);
    m_list->insertItem(row + step, item);
    m_list->setCurrentRow(row + step);
}

void ColumnsDialog::slot_update()
{
    const int row = m_list->currentRow();
    m_up->setEnabled(row > 0);
    m_down->setEnabled(row >= 0 && row < m_list->count() - 1);
    bool isAnyShown = false;
    for (int i = 0; i < m_list->count(); ++i) {
        isAnyShown = isAnyShown || m_list->item(i)->checkState() == Qt::Checked;
    }
    m_ok->setEnabled(isAnyShown);
}

ColumnLayout ColumnsDialog::columnLayout() const
{
    std::vector<ColumnLayout::Column> columns;
    for (int i = 0; i < m_list->count(); ++i) {
        const QListWidgetItem &item = *m_list->item(i);
        columns.push_back({static_cast<FrameColumn>(item.data(ColumnRole).toInt()), item.data(WidthRole).toDouble(),
                           item.checkState() == Qt::Checked});
    }
    return ColumnLayout(columns);
}
