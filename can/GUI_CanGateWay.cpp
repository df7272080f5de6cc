#include "can/GUI_CanGateWay.h"

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
    void addDeleteButton(QWidget *row, quint32 word);
    void showRows();
    void addTyped();
    QString add(const QString &text, quint8 type);
    void remove(quint32 word);
    int selectedRow() const;

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
    // The default button: Enter in the entry field presses it, so that a list is typed without leaving the field.
    QObject::connect(ui.btn_apply, &QPushButton::clicked, q, [this] { addTyped(); });
    QObject::connect(ui.btn_clear, &QPushButton::clicked, q, [this] {
        list.clear();
        showRows();
    });
    QObject::connect(ui.btn_ok, &QPushButton::clicked, q, &QDialog::accept);
    QObject::connect(ui.btn_cancel, &QPushButton::clicked, q, &QDialog::reject);
    auto *deleteKey = new QShortcut(QKeySequence(Qt::Key_Delete), ui.listWidget);
    deleteKey->setContext(Qt::WidgetShortcut);
    QObject::connect(deleteKey, &QShortcut::activated, q, [this] {
        if (const int row = selectedRow(); row >= 0) {
            remove(list.words().at(row));
        }
    });
}

/// Shows a word in a row behind the others.
void GUI_CanGateWayPrivate::addRow(quint32 word)
{
    auto *item = new QListWidgetItem(ui.listWidget);
    auto *row = new QWidget(ui.listWidget->viewport());
    auto *layout = new QHBoxLayout(row);
    layout->setContentsMargins(8, 4, 8, 4);
    layout->setSpacing(8);
    addLabel(row, "lbl_icon", {})->setPixmap(rowIcon.pixmap(QSize(RowIconSize, RowIconSize)));
    QLabel *number = addLabel(row, "lbl_number", gatewayRowNumber(ui.listWidget->count()));
    number->setMinimumWidth(number->fontMetrics().horizontalAdvance(QStringLiteral("000")));
    addLabel(row, "lbl_id", gatewayIdText(word), 1);
    addLabel(row, "lbl_type", typeText(word), 1);
    addDeleteButton(row, word);
    item->setSizeHint(row->sizeHint());
    item->setData(Qt::AccessibleTextRole, QStringLiteral("%1 %2").arg(gatewayIdText(word), typeText(word)));
    ui.listWidget->setItemWidget(item, row);
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

void GUI_CanGateWayPrivate::addTyped()
{
    const QString problem = add(ui.lbx_id->text(), static_cast<quint8>(ui.cbx_type->currentData().toUInt()));
    if (!problem.isEmpty()) {
        emit q->sig_showMessageBox(problem, MessageCritical);
    }
    ui.lbx_id->setFocus();
    ui.lbx_id->selectAll();
}

/// Answers why the identifier cannot be in the list.
QString GUI_CanGateWayPrivate::add(const QString &text, quint8 type)
{
    const std::optional<quint32> id = gatewayIdFromText(text, type);
    if (!id) {
        return GUI_CanGateWay::tr("Frame ID error, Standard frame valid range: 0x0-0x7FF, Extend frame valid range: "
                                  "0x0-0x1FFFFFFF");
    }
    const quint32 word = gatewayWord(*id, type);
    switch (list.add(word)) {
    case GatewayIdList::AddResult::Full:
        return GUI_CanGateWay::tr("Maximum frame count 64!");
    case GatewayIdList::AddResult::Exists:
        return GUI_CanGateWay::tr("The ID already exists in the list!");
    case GatewayIdList::AddResult::Added:
        addRow(word);
        ui.listWidget->scrollToBottom();
    }
    return {};
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
