#include "widgets/CHexLineEdit.h"

#include "widgets/CHexEditView.h"
#include "widgets/HexEntry.h"
#include "widgets/NumberEntry.h"

#include <QContextMenuEvent>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLineEdit>
#include <QMenu>
#include <QPointer>
#include <QPushButton>
#include <QRegularExpressionValidator>
#include <QUndoStack>

#include <algorithm>

namespace {
constexpr int LineWidthMin = 20;
constexpr int MarginRight = 5;

struct LineState
{
    QString text;
    int cursor = 0;
    QByteArray payload;
};
} // namespace

class CHexLineEditPrivate
{
public:
    explicit CHexLineEditPrivate(CHexLineEdit *field)
        : q(field)
    {
    }

    void build();
    void connectSignals();
    void show(const LineState &wanted);
    void showPayload();
    void startWith(const QByteArray &payload);
    void change(const LineState &wanted);
    void replacePayload(QByteArray payload);
    void skipBlanks(int key) const;
    bool handleKey(const QKeyEvent &event);
    void showContextMenu(QPoint position);

    CHexLineEdit *q;
    QLineEdit *lineEdit = nullptr;
    QPushButton *button = nullptr;
    QPointer<CHexEditView> dialog;
    LineState state;
    /// Instead of the line edit's own history, which ends with each regrouping and knows no payload.
    QUndoStack history;
};

namespace {
class LineStep : public QUndoCommand
{
public:
    LineStep(CHexLineEditPrivate &field, LineState after)
        : m_field(field)
        , m_before(field.state)
        , m_after(std::move(after))
    {
    }
    void undo() override { m_field.show(m_before); }
    void redo() override { m_field.show(m_after); }

private:
    CHexLineEditPrivate &m_field;
    LineState m_before;
    LineState m_after;
};
} // namespace

void CHexLineEditPrivate::build()
{
    lineEdit = new QLineEdit(q);
    lineEdit->setObjectName(QStringLiteral("m_pLineEdit"));
    lineEdit->setMinimumWidth(LineWidthMin);
    lineEdit->setAccessibleName(CHexLineEdit::tr("Data bytes in hexadecimal"));
    lineEdit->setValidator(
        new QRegularExpressionValidator(QRegularExpression(QStringLiteral("[A-Fa-f0-9\\s]*")), lineEdit));
    cleanEntry(lineEdit, NumberEntry::HexBytes);
    lineEdit->installEventFilter(q);

    button = new QPushButton(QStringLiteral("..."), q);
    button->setObjectName(QStringLiteral("m_pPushButton"));
    button->setToolTip(CHexLineEdit::tr("Edit data"));
    button->setAccessibleName(CHexLineEdit::tr("Edit data"));
    button->setAutoDefault(false);
    button->setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Preferred); // as high as the line

    auto *layout = new QHBoxLayout(q);
    layout->setObjectName(QStringLiteral("pHLayout"));
    layout->setSpacing(0);
    layout->setContentsMargins(0, 0, MarginRight, 0);
    layout->addWidget(lineEdit, 1);
    layout->addWidget(button);
    q->setFocusProxy(lineEdit);
    q->setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
}

void CHexLineEditPrivate::connectSignals()
{
    QObject::connect(lineEdit, &QLineEdit::textEdited, q, &CHexLineEdit::slot_textEdited);
    QObject::connect(lineEdit, &QLineEdit::editingFinished, q, &CHexLineEdit::slot_textEditingFinished);
    // Comes after textEdited, so that the state before an edit keeps the cursor of that time.
    QObject::connect(lineEdit, &QLineEdit::cursorPositionChanged, q, [this](int, int now) { state.cursor = now; });
    QObject::connect(button, &QPushButton::clicked, q, &CHexLineEdit::slot_buttonClicked);
}

void CHexLineEditPrivate::show(const LineState &wanted)
{
    const LineState kept = wanted; // wanted may be the state itself, which follows the cursor
    if (lineEdit->text() != kept.text) {
        lineEdit->setText(kept.text);
    }
    lineEdit->setCursorPosition(kept.cursor);
    state = kept;
}

/// The cursor stays where it is, as far as there is text.
void CHexLineEditPrivate::showPayload()
{
    const QString text = shownPayload(state.payload);
    show({text, std::min(lineEdit->cursorPosition(), text.size()), state.payload});
}

void CHexLineEditPrivate::startWith(const QByteArray &payload)
{
    history.clear();
    state.payload = payload;
    showPayload();
}

/// A change by the user, which can be undone.
void CHexLineEditPrivate::change(const LineState &wanted)
{
    history.push(new LineStep(*this, wanted));
}

/// The length stays, also when it was set while the dialog was open.
void CHexLineEditPrivate::replacePayload(QByteArray payload)
{
    payload.truncate(state.payload.size());
    payload.append(QByteArray(state.payload.size() - payload.size(), '\0'));
    const QString text = shownPayload(payload);
    change({text, text.size(), payload});
}

/// A blank that is removed would come back at once, so these keys go for the digit behind it.
void CHexLineEditPrivate::skipBlanks(int key) const
{
    const QString text = lineEdit->text();
    int position = lineEdit->cursorPosition();
    if (key == Qt::Key_Backspace) {
        while (position > 0 && text.at(position - 1).isSpace()) {
            --position;
        }
    } else {
        while (position < text.size() && text.at(position).isSpace()) {
            ++position;
        }
    }
    lineEdit->setCursorPosition(position);
}

/// True when the key goes no further.
bool CHexLineEditPrivate::handleKey(const QKeyEvent &event)
{
    const bool isEditing = event.key() == Qt::Key_Backspace || event.key() == Qt::Key_Delete;
    if (isEditing && event.modifiers() == Qt::NoModifier && !lineEdit->hasSelectedText()) {
        skipBlanks(event.key());
        return false;
    }
    if (event.matches(QKeySequence::Undo)) {
        history.undo();
        return true;
    }
    if (event.matches(QKeySequence::Redo) || (event.key() == Qt::Key_Y && event.modifiers() == Qt::ControlModifier)) {
        history.redo();
        return true;
    }
    return false;
}

/// The line edit's own menu with this field's history in it.
void CHexLineEditPrivate::showContextMenu(QPoint position)
{
    QMenu *menu = lineEdit->createStandardContextMenu();
    menu->setAttribute(Qt::WA_DeleteOnClose);
    const QList<QAction *> actions = menu->actions();
    menu->removeAction(actions.value(0));
    menu->removeAction(actions.value(1));
    auto *undo = new QAction(CHexLineEdit::tr("Undo") + QStringLiteral("\tCtrl+Z"), menu);
    auto *redo = new QAction(CHexLineEdit::tr("Redo") + QStringLiteral("\tCtrl+Y"), menu);
    undo->setEnabled(history.canUndo());
    redo->setEnabled(history.canRedo());
    QObject::connect(undo, &QAction::triggered, &history, &QUndoStack::undo);
    QObject::connect(redo, &QAction::triggered, &history, &QUndoStack::redo);
    menu->insertActions(actions.value(2), {undo, redo});
    menu->popup(position);
}

CHexLineEdit::CHexLineEdit(QWidget *parent)
    : QWidget(parent)
    , m_p(std::make_unique<CHexLineEditPrivate>(this))
{
    m_p->build();
    m_p->connectSignals();
}

CHexLineEdit::~CHexLineEdit()
{
    // A line that goes while it has the focus says that the editing ends; nobody is left to show the payload.
    m_p->lineEdit->disconnect(this);
}

void CHexLineEdit::setPayload(const QByteArray &payload)
{
    m_p->startWith(payload.left(LengthMax));
}

QByteArray CHexLineEdit::payload() const
{
    return m_p->state.payload;
}

void CHexLineEdit::setLength(int bytes)
{
    const int size = std::clamp(bytes, 0, LengthMax);
    QByteArray payload = m_p->state.payload.left(size);
    payload.append(QByteArray(size - payload.size(), '\0'));
    m_p->startWith(payload);
}

int CHexLineEdit::length() const
{
    return m_p->state.payload.size();
}

bool CHexLineEdit::eventFilter(QObject *watched, QEvent *event)
{
    if (watched == m_p->lineEdit && event->type() == QEvent::KeyPress) {
        return m_p->handleKey(*static_cast<QKeyEvent *>(event));
    }
    if (watched == m_p->lineEdit && event->type() == QEvent::ContextMenu) {
        m_p->showContextMenu(static_cast<QContextMenuEvent *>(event)->globalPos());
        return true;
    }
    return QWidget::eventFilter(watched, event);
}

/// Opened without waiting for its end: field and dialog may both be gone by then.
void CHexLineEdit::slot_buttonClicked()
{
    if (m_p->dialog) {
        m_p->dialog->activateWindow();
        return;
    }
    auto *dialog = new CHexEditView(payload(), this);
    m_p->dialog = dialog;
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    connect(dialog, &QDialog::accepted, this, [this, dialog] { m_p->replacePayload(dialog->data()); });
    dialog->open();
}

void CHexLineEdit::slot_textEdited(const QString &text)
{
    const int size = length();
    const QString digits = hexDigits(text, size);
    const bool isInserting = text.size() > m_p->state.text.size();
    const QString beforeCursor = text.left(m_p->lineEdit->cursorPosition());
    LineState edited;
    edited.text = groupedDigits(digits);
    edited.cursor = std::min(edited.text.size(), groupedPosition(hexDigits(beforeCursor, size).size(), isInserting));
    if (digits == hexDigits(m_p->state.text, size)) {
        // Only blanks came or went: bytes that the line does not show stay.
        edited.payload = m_p->state.payload;
        m_p->show(edited);
        return;
    }
    edited.payload = payloadFromDigits(digits, size);
    m_p->change(edited);
}

void CHexLineEdit::slot_textEditingFinished()
{
    m_p->showPayload();
}
