#include "can/GUI_CanFilterTool.h"

#include "can/CanDeviceParam.h"
#include "can/CanFrameInput.h"
#include "can/CanIdEntry.h"
#include "ui_GUI_CanFilterTool.h"
#include "widgets/HexEntry.h"
#include "widgets/NumberEntry.h"

#include <QKeyEvent>
#include <QLocale>
#include <QShortcut>

namespace {
enum FrameType { StandardFrame, ExtendedFrame };

/// With a comma after each three digits, which both languages write.
QString countText(quint64 count)
{
    return QLocale(QLocale::English).toString(count);
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

GUI_CanFilterTool::GUI_CanFilterTool(const QVector<CanIdRange> &ids, QWidget *parent)
    : QDialog(parent)
    , m_ui(std::make_unique<Ui::GUI_CanFilterTool>())
    , m_ids(ids)
{
    m_ui->setupUi(this);
    prepareFields();
    connectSignals();
    showFilter();
}

GUI_CanFilterTool::~GUI_CanFilterTool() = default;

QVector<CanIdRange> GUI_CanFilterTool::ids() const
{
    return m_ids;
}

bool GUI_CanFilterTool::isExtended() const
{
    return m_ui->cbx_idType->currentData().toInt() == ExtendedFrame;
}

bool GUI_CanFilterTool::isTyped() const
{
    return !m_ui->lbx_idFrom->text().isEmpty() || !m_ui->lbx_idTo->text().isEmpty();
}

void GUI_CanFilterTool::prepareFields()
{
    for (QLineEdit *field : {m_ui->lbx_idFrom, m_ui->lbx_idTo, m_ui->lbx_testID}) {
        restrictEntry(field, NumberEntry::PrefixedHex, hexNumberPattern());
    }
    for (QComboBox *combo : {m_ui->cbx_idType, m_ui->cbx_testType}) {
        combo->addItem(tr("Standard"), StandardFrame);
        combo->addItem(tr("Extend"), ExtendedFrame);
    }
    m_ui->table_ids->horizontalHeader()->setSectionResizeMode(QHeaderView::Stretch);
    m_ui->table_ids->verticalHeader()->setDefaultSectionSize(m_ui->table_ids->fontMetrics().height() + 6);
    for (const CanIdRange &range : qAsConst(m_ids)) {
        appendRow(range);
    }
    m_ui->lbx_idFrom->setFocus();
}

void GUI_CanFilterTool::connectSignals()
{
    const auto onClick = [this](QPushButton *button, auto action) {
        connect(button, &QPushButton::clicked, this, action);
    };
    onClick(m_ui->btn_add, [this] { addTyped(); });
    onClick(m_ui->btn_remove, [this] { removeSelected(); });
    onClick(m_ui->btn_clear, [this] { clear(); });
    connect(m_ui->table_ids, &QTableWidget::itemSelectionChanged, this, [this] { showSelection(); });
    connect(m_ui->lbx_testID, &QLineEdit::textChanged, this, [this] { showTest(); });
    connect(m_ui->cbx_testType, QOverload<int>::of(&QComboBox::currentIndexChanged), this, [this] { showTest(); });
    auto *deleteKey = new QShortcut(QKeySequence(QKeySequence::Delete), m_ui->table_ids);
    deleteKey->setContext(Qt::WidgetShortcut);
    connect(deleteKey, &QShortcut::activated, this, [this] { removeSelected(); });
}

/// Moves what has been typed into the list, or says why it cannot be there and answers false.
bool GUI_CanFilterTool::addTyped()
{
    const CanIdEntry entry = checkedIdEntry(m_ui->lbx_idFrom->text(), m_ui->lbx_idTo->text(), isExtended(), m_ids);
    m_ui->lbl_problem->setText(problemText(entry, isExtended()));
    QLineEdit *next = entry.problem == CanIdEntryProblem::Last ? m_ui->lbx_idTo : m_ui->lbx_idFrom;
    next->setFocus();
    if (entry.problem != CanIdEntryProblem::None) {
        next->selectAll();
        return false;
    }
    m_ids.append(entry.range);
    appendRow(entry.range);
    m_ui->table_ids->scrollToBottom();
    m_ui->lbx_idFrom->clear();
    m_ui->lbx_idTo->clear();
    showFilter();
    return true;
}

void GUI_CanFilterTool::appendRow(const CanIdRange &range)
{
    const int row = m_ui->table_ids->rowCount();
    m_ui->table_ids->insertRow(row);
    const int digits = frameIdDigits(range.extended);
    int column = 0;
    for (const QString &text : {range.extended ? tr("Extend") : tr("Standard"), hexNumber(range.first, digits),
                                hexNumber(range.last, digits)}) {
        m_ui->table_ids->setItem(row, column++, new QTableWidgetItem(text));
    }
}

void GUI_CanFilterTool::removeSelected()
{
    for (int row = m_ui->table_ids->rowCount() - 1; row >= 0; --row) {
        if (m_ui->table_ids->selectionModel()->isRowSelected(row, QModelIndex())) {
            m_ui->table_ids->removeRow(row);
            m_ids.remove(row);
        }
    }
    m_ui->lbl_problem->clear();
    showFilter();
}

void GUI_CanFilterTool::clear()
{
    m_ui->table_ids->setRowCount(0);
    m_ids.clear();
    m_ui->lbl_problem->clear();
    showFilter();
    m_ui->lbx_idFrom->setFocus();
}

/// All that follows from the list.
void GUI_CanFilterTool::showFilter()
{
    m_filter = narrowestFilter(m_ids);
    m_ui->lbx_accCode->setText(acceptanceText(m_filter.code));
    m_ui->lbx_accMask->setText(acceptanceText(m_filter.mask));
    const CanIdCount passing = passingIds(m_filter);
    const CanIdCount listed = listedIds(m_ids);
    m_ui->lbl_otherIds->setText(
        tr("Standard: %1, extended: %2")
            .arg(countText(passing.standard - listed.standard), countText(passing.extended - listed.extended)));
    // A standard identifier that passes, whichever it is, tells how all of them do.
    if (m_ids.isEmpty()) {
        m_ui->lbl_note->setText(tr("An empty list lets everything pass."));
    } else if (passage(m_filter, m_filter.code >> 21U, false) == CanPassage::SomeFrames) {
        m_ui->lbl_note->setText(tr("Such standard frames pass or not, depending on their data."));
    } else {
        m_ui->lbl_note->clear();
    }
    m_ui->btn_clear->setEnabled(!m_ids.isEmpty());
    showSelection();
    showTest();
}

void GUI_CanFilterTool::showSelection()
{
    m_ui->btn_remove->setEnabled(m_ui->table_ids->selectionModel()->hasSelection());
}

void GUI_CanFilterTool::showTest()
{
    const QString text = m_ui->lbx_testID->text();
    const bool extended = m_ui->cbx_testType->currentData().toInt() == ExtendedFrame;
    if (text.isEmpty()) {
        m_ui->lbl_testResult->clear();
    } else if (const std::optional<quint32> id = frameIdFromText(text, extended)) {
        m_ui->lbl_testResult->setText(passageText(passage(m_filter, *id, extended)));
    } else {
        m_ui->lbl_testResult->setText(rangeText(extended));
    }
}

void GUI_CanFilterTool::accept()
{
    if (!isTyped() || addTyped()) {
        QDialog::accept();
    }
}

void GUI_CanFilterTool::keyPressEvent(QKeyEvent *event)
{
    const bool isEnter = event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter;
    const bool isInRange = m_ui->lbx_idFrom->hasFocus() || m_ui->lbx_idTo->hasFocus();
    if (isEnter && isInRange && isTyped()) {
        addTyped();
        return;
    }
    QDialog::keyPressEvent(event);
}
