#include "can/GUI_CanGateWay.h"

#include "can/GatewayEntry.h"
#include "can/GatewayIdList.h"
#include "ui_GUI_CanGateWay.h"
#include "widgets/CMessageBox.h"
#include "widgets/NumberEntry.h"

#include <QIcon>
#include <QRegularExpressionValidator>
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

class GUI_CanGateWayPrivate
{
public:
    GUI_CanGateWayPrivate(GUI_CanGateWay *dialog, const QSet<quint32> &entries)
        : q(dialog)
        , list(entries)
    {
    }

    void prepareEntry();
    void connectSignals();
    void addRow(quint32 word);
    QWidget *makeRow(const QString &number, quint32 word);
    void addDeleteButton(QWidget *row, quint32 word);
    void showRows();
    void add(quint32 word);
    void remove(quint32 word);
    int selectedRow() const;
    void showError(const QString &text) const { emit q->sig_showMessageBox(text, MessageCritical); }

    GUI_CanGateWay *q;
    Ui::GUI_CanGateWay ui;
    GatewayIdList list; ///< the rows, in their order
    const QIcon rowIcon{QStringLiteral(":/32x32/Images/32x32/Parameter.png")};
    const QIcon deleteIcon{QStringLiteral(":/32x32/Images/32x32/Close.png")};
};

void GUI_CanGateWayPrivate::prepareEntry()
{
    ui.cbx_type->addItem(GUI_CanGateWay::tr("Standard"), GatewayStandard);
    ui.cbx_type->addItem(GUI_CanGateWay::tr("Extend"), GatewayExtend);
    ui.lbx_id->setValidator(
        new QRegularExpressionValidator(QRegularExpression(QStringLiteral("[0-9a-fA-F\\s]*")), ui.lbx_id));
    cleanEntry(ui.lbx_id, NumberEntry::Hex);
    ui.lbx_id->setFocus();
    ui.lbx_id->selectAll();
}

void GUI_CanGateWayPrivate::connectSignals()
{
    using Dialog = GUI_CanGateWay;
    // The default button: Enter in the entry field presses it, so that a list is typed without leaving the field.
    QObject::connect(ui.btn_apply, &QPushButton::clicked, q, &Dialog::slot_applyBtnClicked);
    QObject::connect(ui.btn_clear, &QPushButton::clicked, q, &Dialog::slot_clearBtnClicked);
    QObject::connect(ui.btn_ok, &QPushButton::clicked, q, &QDialog::accept);
    QObject::connect(ui.btn_cancel, &QPushButton::clicked, q, &QDialog::reject);
    auto *deleteKey = new QShortcut(QKeySequence(Qt::Key_Delete), ui.listWidget);
    deleteKey->setContext(Qt::WidgetShortcut);
    QObject::connect(deleteKey, &QShortcut::activated, q, &Dialog::slot_deletePressed);
}

/// Shows a word in a row behind the others.
void GUI_CanGateWayPrivate::addRow(quint32 word)
{
    auto *item = new QListWidgetItem(ui.listWidget);
    QWidget *row = makeRow(gatewayRowNumber(ui.listWidget->count()), word);
    item->setSizeHint(row->sizeHint());
    item->setData(Qt::AccessibleTextRole, QStringLiteral("%1 %2").arg(gatewayIdText(word), typeText(word)));
    ui.listWidget->setItemWidget(item, row);
}

QWidget *GUI_CanGateWayPrivate::makeRow(const QString &number, quint32 word)
{
    auto *row = new QWidget(ui.listWidget->viewport());
    auto *layout = new QHBoxLayout(row);
    layout->setContentsMargins(8, 4, 8, 4);
    layout->setSpacing(8);
    addLabel(row, "lbl_icon", {})->setPixmap(rowIcon.pixmap(QSize(RowIconSize, RowIconSize)));
    QLabel *numberLabel = addLabel(row, "lbl_number", number);
    numberLabel->setMinimumWidth(numberLabel->fontMetrics().horizontalAdvance(QStringLiteral("000")));
    addLabel(row, "lbl_id", gatewayIdText(word), 1);
    addLabel(row, "lbl_type", typeText(word), 1);
    addDeleteButton(row, word);
    return row;
}

/// The button never takes the focus: Tab would stop at each of 64. The keyboard deletes with Del.
void GUI_CanGateWayPrivate::addDeleteButton(QWidget *row, quint32 word)
{
    auto *button = new QToolButton(row);
    button->setObjectName(QStringLiteral("btn_delete"));
    button->setStyleSheet(QStringLiteral("QToolButton { border: none; padding: 0; }"));
    button->setIcon(deleteIcon);
    button->setIconSize(QSize(DeleteButtonSize, DeleteButtonSize));
    button->setFocusPolicy(Qt::NoFocus);
    button->setToolTip(GUI_CanGateWay::tr("Delete"));
    button->setAccessibleName(GUI_CanGateWay::tr("Delete"));
    button->setAccessibleDescription(gatewayIdText(word));
    row->layout()->addWidget(button);
    // The view deletes the rows later, so the button outlives its click.
    QObject::connect(button, &QToolButton::clicked, q, [this, word] { remove(word); });
}

void GUI_CanGateWayPrivate::showRows()
{
    ui.listWidget->clear();
    for (const quint32 word : list.words()) {
        addRow(word);
    }
}

void GUI_CanGateWayPrivate::add(quint32 word)
{
    switch (list.add(word)) {
    case GatewayIdList::AddResult::Added:
        addRow(word);
        ui.listWidget->scrollToBottom();
        break;
    case GatewayIdList::AddResult::Full:
        showError(GUI_CanGateWay::tr("Maximum frame count 64!"));
        break;
    case GatewayIdList::AddResult::Exists:
        showError(GUI_CanGateWay::tr("The ID already exists in the list!"));
        break;
    }
}

/// The rows are numbered anew; the selected one and what is in view stay as far as they can.
void GUI_CanGateWayPrivate::remove(quint32 word)
{
    const int removed = list.words().indexOf(word);
    int selected = selectedRow();
    const int scrolled = ui.listWidget->verticalScrollBar()->value();
    list.remove(word);
    showRows();
    if (removed < selected) {
        --selected;
    }
    ui.listWidget->setCurrentRow(std::min(selected, ui.listWidget->count() - 1));
    ui.listWidget->doItemsLayout(); // the scroll bar knows its range only then
    ui.listWidget->verticalScrollBar()->setValue(scrolled);
}

/// -1 when none is; the current row may be unselected, and Del must not take a row that is not marked.
int GUI_CanGateWayPrivate::selectedRow() const
{
    const QModelIndexList rows = ui.listWidget->selectionModel()->selectedRows();
    return rows.isEmpty() ? -1 : rows.first().row();
}

GUI_CanGateWay::GUI_CanGateWay(const QSet<quint32> &entries, QWidget *parent)
    : QDialog(parent)
    , m_p(std::make_unique<GUI_CanGateWayPrivate>(this, entries))
{
    m_p->ui.setupUi(this);
    setWindowFlag(Qt::WindowContextHelpButtonHint, false);
    m_p->prepareEntry();
    m_p->connectSignals();
    m_p->showRows();
}

GUI_CanGateWay::~GUI_CanGateWay() = default;

QSet<quint32> GUI_CanGateWay::entries() const
{
    return m_p->list.toSet();
}

void GUI_CanGateWay::slot_applyBtnClicked()
{
    const auto type = static_cast<quint8>(m_p->ui.cbx_type->currentData().toUInt());
    if (const std::optional<quint32> id = gatewayIdFromText(m_p->ui.lbx_id->text(), type)) {
        m_p->add(gatewayWord(*id, type));
    } else {
        m_p->showError(tr("Frame ID error, Standard frame valid range: 0x0-0x7FF, Extend frame valid range: "
                          "0x0-0x1FFFFFFF"));
    }
    m_p->ui.lbx_id->setFocus();
    m_p->ui.lbx_id->selectAll();
}

void GUI_CanGateWay::slot_clearBtnClicked()
{
    m_p->list.clear();
    m_p->showRows();
}

void GUI_CanGateWay::slot_deletePressed()
{
    const int row = m_p->selectedRow();
    if (row >= 0) {
        m_p->remove(m_p->list.words().at(row));
    }
}
