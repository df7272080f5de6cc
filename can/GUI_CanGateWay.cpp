#include "can/GUI_CanGateWay.h"

#include "ui_GUI_CanGateWay.h"
#include "widgets/CMessageBox.h"
#include "widgets/NumberEntry.h"

#include <QScrollBar>
#include <QShortcut>
#include <QToolButton>

#include <algorithm>
#include <optional>

namespace {
constexpr int RowIconSize = 16;      ///< device-independent pixels
constexpr int DeleteButtonSize = 20; ///< device-independent pixels

QString typeText(quint32 word)
{
    return isGatewayExtend(word) ? GUI_CanGateWay::tr("Extend") : GUI_CanGateWay::tr("Standard");
}

QLabel *addLabel(QWidget *row, const char *name, const QString &text, int stretch = 0)
{
    auto *label = new QLabel(text, row);
    label->setObjectName(QLatin1String(name));
    static_cast<QHBoxLayout *>(row->layout())->addWidget(label, stretch);
    return label;
}
} // namespace

GUI_CanGateWay::GUI_CanGateWay(const QSet<quint32> &entries, QWidget *parent)
    : QDialog(parent)
    , m_ui(std::make_unique<Ui::GUI_CanGateWay>())
    , m_list(entries)
{
    m_ui->setupUi(this);
    prepareEntry();
    connectSignals();
    showRows();
}

GUI_CanGateWay::~GUI_CanGateWay() = default;

void GUI_CanGateWay::prepareEntry()
{
    m_ui->cbx_type->addItem(tr("Standard"), GatewayStandard);
    m_ui->cbx_type->addItem(tr("Extend"), GatewayExtend);
    restrictEntry(m_ui->lbx_id, NumberEntry::Hex, QStringLiteral("[0-9a-fA-F\\s]*"));
    m_ui->lbx_id->setFocus();
    m_ui->lbx_id->selectAll();
}

void GUI_CanGateWay::connectSignals()
{
    // The default button: Enter in the entry field presses it, so that a list is typed without leaving the field.
    connect(m_ui->btn_apply, &QPushButton::clicked, this, [this] { addTyped(); });
    connect(m_ui->btn_clear, &QPushButton::clicked, this, [this] {
        m_list.clear();
        showRows();
    });
    auto *deleteKey = new QShortcut(QKeySequence(Qt::Key_Delete), m_ui->listWidget);
    deleteKey->setContext(Qt::WidgetShortcut);
    connect(deleteKey, &QShortcut::activated, this, [this] {
        if (const int row = selectedRow(); row >= 0) {
            remove(m_list.words().at(row));
        }
    });
}

/// Shows a word in a row behind the others.
void GUI_CanGateWay::addRow(quint32 word)
{
    auto *item = new QListWidgetItem(m_ui->listWidget);
    auto *row = new QWidget(m_ui->listWidget->viewport());
    auto *layout = new QHBoxLayout(row);
    layout->setContentsMargins(8, 4, 8, 4);
    layout->setSpacing(8);
    addLabel(row, "lbl_icon", {})->setPixmap(m_rowIcon.pixmap(QSize(RowIconSize, RowIconSize)));
    QLabel *number = addLabel(row, "lbl_number", gatewayRowNumber(m_ui->listWidget->count()));
    number->setMinimumWidth(number->fontMetrics().horizontalAdvance(QStringLiteral("000")));
    addLabel(row, "lbl_id", gatewayIdText(word), 1);
    addLabel(row, "lbl_type", typeText(word), 1);
    addDeleteButton(row, word);
    item->setSizeHint(row->sizeHint());
    item->setData(Qt::AccessibleTextRole, QStringLiteral("%1 %2").arg(gatewayIdText(word), typeText(word)));
    m_ui->listWidget->setItemWidget(item, row);
}

/// The button never takes the focus: Tab would stop at each of 64. The keyboard deletes with Del.
void GUI_CanGateWay::addDeleteButton(QWidget *row, quint32 word)
{
    auto *button = new QToolButton(row);
    button->setObjectName(QStringLiteral("btn_delete"));
    button->setStyleSheet(QStringLiteral("QToolButton { border: none; padding: 0; }"));
    button->setIcon(m_deleteIcon);
    button->setIconSize(QSize(DeleteButtonSize, DeleteButtonSize));
    button->setFocusPolicy(Qt::NoFocus);
    button->setToolTip(tr("Delete"));
    button->setAccessibleName(tr("Delete"));
    button->setAccessibleDescription(gatewayIdText(word));
    row->layout()->addWidget(button);
    // The view deletes the rows later, so the button outlives its click.
    connect(button, &QToolButton::clicked, this, [this, word] { remove(word); });
}

void GUI_CanGateWay::showRows()
{
    m_ui->listWidget->clear();
    for (const quint32 word : m_list.words()) {
        addRow(word);
    }
}

void GUI_CanGateWay::addTyped()
{
    const QString problem = add(m_ui->lbx_id->text(), static_cast<quint8>(m_ui->cbx_type->currentData().toUInt()));
    if (!problem.isEmpty()) {
        emit sig_showMessageBox(problem, MessageCritical);
    }
    m_ui->lbx_id->setFocus();
    m_ui->lbx_id->selectAll();
}

/// Answers why the identifier cannot be in the list.
QString GUI_CanGateWay::add(const QString &text, quint8 type)
{
    const std::optional<quint32> id = gatewayIdFromText(text, type);
    if (!id) {
        return tr("Frame ID error, Standard frame valid range: 0x0-0x7FF, Extend frame valid range: "
                  "0x0-0x1FFFFFFF");
    }
    const quint32 word = gatewayWord(*id, type);
    switch (m_list.add(word)) {
    case GatewayIdList::AddResult::Full:
        return tr("Maximum frame count 64!");
    case GatewayIdList::AddResult::Exists:
        return tr("The ID already exists in the list!");
    case GatewayIdList::AddResult::Added:
        addRow(word);
        m_ui->listWidget->scrollToBottom();
    }
    return {};
}

/// The rows are numbered anew; the selected one and what is in view stay as far as they can.
void GUI_CanGateWay::remove(quint32 word)
{
    const int removed = m_list.words().indexOf(word);
    int selected = selectedRow();
    const int scrolled = m_ui->listWidget->verticalScrollBar()->value();
    m_list.remove(word);
    showRows();
    if (removed < selected) {
        --selected;
    }
    m_ui->listWidget->setCurrentRow(std::min(selected, m_ui->listWidget->count() - 1));
    m_ui->listWidget->doItemsLayout(); // the scroll bar knows its range only then
    m_ui->listWidget->verticalScrollBar()->setValue(scrolled);
}

/// -1 when none is; the current row may be unselected, and Del must not take a row that is not marked.
int GUI_CanGateWay::selectedRow() const
{
    const QModelIndexList rows = m_ui->listWidget->selectionModel()->selectedRows();
    return rows.isEmpty() ? -1 : rows.first().row();
}
