#include "widgets/CHexLineEdit.h"

#include "ui_CHexLineEdit.h"
#include "widgets/CHexEditView.h"
#include "widgets/HexEntry.h"
#include "widgets/NumberEntry.h"
#include "widgets/StateStep.h"

#include <QContextMenuEvent>
#include <QKeyEvent>
#include <QMenu>

#include <algorithm>

CHexLineEdit::CHexLineEdit(QWidget *parent)
    : QWidget(parent)
    , m_ui(std::make_unique<Ui::CHexLineEdit>())
{
    m_ui->setupUi(this);
    QLineEdit *line = m_ui->m_pLineEdit;
    restrictEntry(line, NumberEntry::HexBytes, QStringLiteral("[A-Fa-f0-9\\s]*"));
    line->installEventFilter(this);
    setFocusProxy(line);
    connect(line, &QLineEdit::textEdited, this, &CHexLineEdit::slot_textEdited);
    connect(line, &QLineEdit::editingFinished, this, &CHexLineEdit::slot_textEditingFinished);
    // Comes after textEdited, so that the state before an edit keeps the cursor of that time.
    connect(line, &QLineEdit::cursorPositionChanged, this, [this](int, int now) { m_state.cursor = now; });
    connect(m_ui->m_pPushButton, &QPushButton::clicked, this, &CHexLineEdit::slot_buttonClicked);
}

CHexLineEdit::~CHexLineEdit()
{
    // A line that goes while it has the focus says that the editing ends; nobody is left to show the payload.
    m_ui->m_pLineEdit->disconnect(this);
}

void CHexLineEdit::setPayload(const QByteArray &payload)
{
    m_history.clear();
    m_state.payload = payload.left(LengthMax);
    slot_textEditingFinished();
}

void CHexLineEdit::setLength(int bytes)
{
    setPayload(payload().leftJustified(std::clamp(bytes, 0, LengthMax), '\0', true));
}

void CHexLineEdit::show(const State &wanted)
{
    const State kept = wanted; // wanted may be the state itself, which follows the cursor
    if (m_ui->m_pLineEdit->text() != kept.text) {
        m_ui->m_pLineEdit->setText(kept.text);
    }
    m_ui->m_pLineEdit->setCursorPosition(kept.cursor);
    m_state = kept;
}

/// A change by the user, which can be undone.
void CHexLineEdit::change(const State &wanted)
{
    m_history.push(new StateStep<State>(m_state, wanted, [this](const State &state) { show(state); }));
}

/// A blank that is removed would come back at once, so these keys go for the digit behind it.
void CHexLineEdit::skipBlanks(bool backward)
{
    const QString text = m_ui->m_pLineEdit->text();
    int position = m_ui->m_pLineEdit->cursorPosition();
    while (text.mid(backward ? position - 1 : position, 1) == QLatin1String(" ")) {
        position += backward ? -1 : 1;
    }
    m_ui->m_pLineEdit->setCursorPosition(position);
}

/// True when the key goes no further.
bool CHexLineEdit::handleKey(const QKeyEvent &event)
{
    const bool isEditing = event.key() == Qt::Key_Backspace || event.key() == Qt::Key_Delete;
    if (isEditing && event.modifiers() == Qt::NoModifier && !m_ui->m_pLineEdit->hasSelectedText()) {
        skipBlanks(event.key() == Qt::Key_Backspace);
        return false;
    }
    if (event.matches(QKeySequence::Undo)) {
        m_history.undo();
        return true;
    }
    if (event.matches(QKeySequence::Redo) || (event.key() == Qt::Key_Y && event.modifiers() == Qt::ControlModifier)) {
        m_history.redo();
        return true;
    }
    return false;
}

/// The line edit's own menu with this field's history in it.
void CHexLineEdit::showContextMenu(QPoint position)
{
    QMenu *menu = m_ui->m_pLineEdit->createStandardContextMenu();
    menu->setAttribute(Qt::WA_DeleteOnClose);
    const QList<QAction *> actions = menu->actions();
    menu->removeAction(actions.value(0));
    menu->removeAction(actions.value(1));
    auto *undo = new QAction(tr("Undo") + QStringLiteral("\tCtrl+Z"), menu);
    auto *redo = new QAction(tr("Redo") + QStringLiteral("\tCtrl+Y"), menu);
    undo->setEnabled(m_history.canUndo());
    redo->setEnabled(m_history.canRedo());
    connect(undo, &QAction::triggered, &m_history, &QUndoStack::undo);
    connect(redo, &QAction::triggered, &m_history, &QUndoStack::redo);
    menu->insertActions(actions.value(2), {undo, redo});
    menu->popup(position);
}

bool CHexLineEdit::eventFilter(QObject *watched, QEvent *event)
{
    if (watched == m_ui->m_pLineEdit && event->type() == QEvent::KeyPress) {
        return handleKey(*static_cast<QKeyEvent *>(event));
    }
    if (watched == m_ui->m_pLineEdit && event->type() == QEvent::ContextMenu) {
        showContextMenu(static_cast<QContextMenuEvent *>(event)->globalPos());
        return true;
    }
    return QWidget::eventFilter(watched, event);
}

/// Opened without waiting for its end: field and dialog may both be gone by then.
void CHexLineEdit::slot_buttonClicked()
{
    if (m_dialog) {
        m_dialog->activateWindow();
        return;
    }
    auto *dialog = new CHexEditView(payload(), this);
    m_dialog = dialog;
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    connect(dialog, &QDialog::accepted, this, [this, dialog] {
        // The length stays, also when it was set while the dialog was open.
        const QByteArray edited = dialog->data().leftJustified(length(), '\0', true);
        const QString text = shownPayload(edited);
        change({text, text.size(), edited});
    });
    dialog->open();
}

void CHexLineEdit::slot_textEdited(const QString &text)
{
    const QString digits = hexDigits(text, length());
    const QString beforeCursor = hexDigits(text.left(m_ui->m_pLineEdit->cursorPosition()), length());
    const bool isInserting = text.size() > m_state.text.size();
    State edited;
    edited.text = groupedDigits(digits);
    edited.cursor = std::min(edited.text.size(), groupedPosition(beforeCursor.size(), isInserting));
    if (digits == hexDigits(m_state.text, length())) {
        // Only blanks came or went: bytes that the line does not show stay.
        edited.payload = payload();
        show(edited);
        return;
    }
    edited.payload = payloadFromDigits(digits, length());
    change(edited);
}

/// The cursor stays where it is, as far as there is text.
void CHexLineEdit::slot_textEditingFinished()
{
    const QString text = shownPayload(payload());
    show({text, std::min(m_ui->m_pLineEdit->cursorPosition(), text.size()), payload()});
}
