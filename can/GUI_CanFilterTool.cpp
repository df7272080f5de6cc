#include "can/GUI_CanFilterTool.h"

#include "can/CanDeviceParam.h"
#include "can/CanFrameInput.h"
#include "can/CanIdEntry.h"
#include "ui_GUI_CanFilterTool.h"
#include "widgets/NumberEntry.h"

#include <QKeyEvent>
#include <QLocale>
#include <QRegularExpressionValidator>
#include <QShortcut>

#include <algorithm>

namespace {
enum FrameType { StandardFrame, ExtendedFrame };

/// With a comma after each three digits, which both languages write.
QString countText(quint64 count)
{
    return QLocale(QLocale::English).toString(count);
}

/// As many digits as the highest identifier of the frame type has.
QString idText(quint32 id, bool extended)
{
    return QStringLiteral("%1").arg(id, extended ? 8 : 3, 16, QLatin1Char('0')).toUpper();
}

QString rangeText(bool extended)
{
    return extended ? GUI_CanFilterTool::tr("Extended identifiers: 0 to 1FFFFFFF, hexadecimal")
                    : GUI_CanFilterTool::tr("Standard identifiers: 0 to 7FF, hexadecimal");
}

QString problemText(const CanIdEntry &entry, bool extended)
{
    switch (entry.problem) {
    case CanIdEntryProblem::None:
        return {};
    case CanIdEntryProblem::First:
    case CanIdEntryProblem::Last:
        return rangeText(extended);
    case CanIdEntryProblem::Order:
        return GUI_CanFilterTool::tr("The first identifier of the range is above the last one");
    case CanIdEntryProblem::Listed:
        return GUI_CanFilterTool::tr("Already in the list");
    case CanIdEntryProblem::Full:
        return GUI_CanFilterTool::tr("The list is full: %1 entries").arg(CanIdEntriesMax);
    }
    return {};
}

QString passageText(CanPassage passage)
{
    switch (passage) {
    case CanPassage::NoFrame:
        return GUI_CanFilterTool::tr("Does not pass");
    case CanPassage::SomeFrames:
        return GUI_CanFilterTool::tr("Passes or not, depending on its data");
    case CanPassage::EveryFrame:
        return GUI_CanFilterTool::tr("Passes");
    }
    return {};
}
} // namespace

class GUI_CanFilterToolPrivate
{
public:
    GUI_CanFilterToolPrivate(GUI_CanFilterTool *dialog, const QVector<CanIdRange> &ranges)
        : q(dialog)
        , ids(ranges)
    {
    }

    void prepareFields();
    void connectSignals();
    bool isExtended() const { return ui.cbx_idType->currentData().toInt() == ExtendedFrame; }
    bool isTyped() const { return !ui.lbx_idFrom->text().isEmpty() || !ui.lbx_idTo->text().isEmpty(); }
    bool addTyped();
    void appendRow(const CanIdRange &range) const;
    void removeSelected();
    void clear();
    void showFilter();
    void showSelection() const;
    void showTest() const;

    GUI_CanFilterTool *q;
    Ui::GUI_CanFilterTool ui;
    QVector<CanIdRange> ids; ///< one for each row of the table
    CanAcceptanceFilter filter;
};

void GUI_CanFilterToolPrivate::prepareFields()
{
    auto *hex = new QRegularExpressionValidator(QRegularExpression(hexNumberPattern()), q);
    for (QLineEdit *field : {ui.lbx_idFrom, ui.lbx_idTo, ui.lbx_testID}) {
        field->setValidator(hex);
        cleanEntry(field, NumberEntry::PrefixedHex);
    }
    for (QComboBox *combo : {ui.cbx_idType, ui.cbx_testType}) {
        combo->addItem(GUI_CanFilterTool::tr("Standard"), StandardFrame);
        combo->addItem(GUI_CanFilterTool::tr("Extend"), ExtendedFrame);
    }
    ui.table_ids->horizontalHeader()->setSectionResizeMode(QHeaderView::Stretch);
    ui.table_ids->verticalHeader()->setDefaultSectionSize(ui.table_ids->fontMetrics().height() + 6);
    for (const CanIdRange &range : qAsConst(ids)) {
        appendRow(range);
    }
    ui.lbx_idFrom->setFocus();
}

void GUI_CanFilterToolPrivate::connectSignals()
{
    const auto onClick = [this](QPushButton *button, auto action) {
        QObject::connect(button, &QPushButton::clicked, q, action);
    };
    onClick(ui.btn_add, [this] { addTyped(); });
    onClick(ui.btn_remove, [this] { removeSelected(); });
    onClick(ui.btn_clear, [this] { clear(); });
    onClick(ui.btn_ok, &QDialog::accept);
    onClick(ui.btn_cancel, &QDialog::reject);
    QObject::connect(ui.table_ids, &QTableWidget::itemSelectionChanged, q, [this] { showSelection(); });
    QObject::connect(ui.lbx_testID, &QLineEdit::textChanged, q, [this] { showTest(); });
    QObject::connect(ui.cbx_testType, QOverload<int>::of(&QComboBox::currentIndexChanged), q, [this] { showTest(); });
    auto *deleteKey = new QShortcut(QKeySequence(QKeySequence::Delete), ui.table_ids);
    deleteKey->setContext(Qt::WidgetShortcut);
    QObject::connect(deleteKey, &QShortcut::activated, q, [this] { removeSelected(); });
}

/// Moves what has been typed into the list, or says why it cannot be there and answers false.
bool GUI_CanFilterToolPrivate::addTyped()
{
    const CanIdEntry entry = checkedIdEntry(ui.lbx_idFrom->text(), ui.lbx_idTo->text(), isExtended(), ids);
    ui.lbl_problem->setText(problemText(entry, isExtended()));
    QLineEdit *next = entry.problem == CanIdEntryProblem::Last ? ui.lbx_idTo : ui.lbx_idFrom;
    next->setFocus();
    if (entry.problem != CanIdEntryProblem::None) {
        next->selectAll();
        return false;
    }
    ids.append(entry.range);
    appendRow(entry.range);
    ui.table_ids->scrollToBottom();
    ui.lbx_idFrom->clear();
    ui.lbx_idTo->clear();
    showFilter();
    return true;
}

void GUI_CanFilterToolPrivate::appendRow(const CanIdRange &range) const
{
    const int row = ui.table_ids->rowCount();
    ui.table_ids->insertRow(row);
    int column = 0;
    for (const QString &text : {range.extended ? GUI_CanFilterTool::tr("Extend") : GUI_CanFilterTool::tr("Standard"),
                                idText(range.first, range.extended), idText(range.last, range.extended)}) {
        ui.table_ids->setItem(row, column++, new QTableWidgetItem(text));
    }
}

void GUI_CanFilterToolPrivate::removeSelected()
{
    for (int row = ui.table_ids->rowCount() - 1; row >= 0; --row) {
        if (ui.table_ids->selectionModel()->isRowSelected(row, QModelIndex())) {
            ui.table_ids->removeRow(row);
            ids.remove(row);
        }
    }
    ui.lbl_problem->clear();
    showFilter();
}

void GUI_CanFilterToolPrivate::clear()
{
    ui.table_ids->setRowCount(0);
    ids.clear();
    ui.lbl_problem->clear();
    showFilter();
    ui.lbx_idFrom->setFocus();
}

/// All that follows from the list.
void GUI_CanFilterToolPrivate::showFilter()
{
    filter = narrowestFilter(ids);
    ui.lbx_accCode->setText(acceptanceText(filter.code));
    ui.lbx_accMask->setText(acceptanceText(filter.mask));
    const CanIdCount passing = passingIds(filter);
    const CanIdCount listed = listedIds(ids);
    ui.lbl_otherIds->setText(
        GUI_CanFilterTool::tr("Standard: %1, extended: %2")
            .arg(countText(passing.standard - listed.standard), countText(passing.extended - listed.extended)));
    // A standard identifier that passes, whichever it is, tells how all of them do.
    if (ids.isEmpty()) {
        ui.lbl_note->setText(GUI_CanFilterTool::tr("An empty list lets everything pass."));
    } else if (passage(filter, filter.code >> 21U, false) == CanPassage::SomeFrames) {
        ui.lbl_note->setText(GUI_CanFilterTool::tr("Such standard frames pass or not, depending on their data."));
    } else {
        ui.lbl_note->clear();
    }
    ui.btn_clear->setEnabled(!ids.isEmpty());
    showSelection();
    showTest();
}

void GUI_CanFilterToolPrivate::showSelection() const
{
    ui.btn_remove->setEnabled(ui.table_ids->selectionModel()->hasSelection());
}

void GUI_CanFilterToolPrivate::showTest() const
{
    const QString text = ui.lbx_testID->text();
    const bool extended = ui.cbx_testType->currentData().toInt() == ExtendedFrame;
    if (text.isEmpty()) {
        ui.lbl_testResult->clear();
    } else if (const std::optional<quint32> id = frameIdFromText(text, extended)) {
        ui.lbl_testResult->setText(passageText(passage(filter, *id, extended)));
    } else {
        ui.lbl_testResult->setText(rangeText(extended));
    }
}

GUI_CanFilterTool::GUI_CanFilterTool(const QVector<CanIdRange> &ids, QWidget *parent)
    : QDialog(parent)
    , m_p(std::make_unique<GUI_CanFilterToolPrivate>(this, ids))
{
    m_p->ui.setupUi(this);
    setWindowFlag(Qt::WindowContextHelpButtonHint, false);
    m_p->prepareFields();
    m_p->connectSignals();
    m_p->showFilter();
}

GUI_CanFilterTool::~GUI_CanFilterTool() = default;

QVector<CanIdRange> GUI_CanFilterTool::ids() const
{
    return m_p->ids;
}

CanAcceptanceFilter GUI_CanFilterTool::filter() const
{
    return m_p->filter;
}

void GUI_CanFilterTool::accept()
{
    if (!m_p->isTyped() || m_p->addTyped()) {
        QDialog::accept();
    }
}

void GUI_CanFilterTool::keyPressEvent(QKeyEvent *event)
{
    const bool isEnter = event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter;
    const bool isInRange = m_p->ui.lbx_idFrom->hasFocus() || m_p->ui.lbx_idTo->hasFocus();
    if (isEnter && isInRange && m_p->isTyped()) {
        m_p->addTyped();
        return;
    }
    QDialog::keyPressEvent(event);
}
