#include "widgets/CMessageBox.h"

#include "ui_CMessageBox.h"
#include "widgets/WrappedLines.h"

#include <QAccessible>
#include <QIcon>
#include <QPixmap>
#include <QPointer>
#include <QPushButton>
#include <QScreen>
#include <QScrollBar>

#include <algorithm>

namespace {
constexpr int LongestLine = 560;   ///< pixels; longer ones wrap
constexpr int ShortestLine = 200;  ///< pixels; keeps small boxes wide enough for their title
constexpr int LongestText = 10000; ///< characters; what follows is left out, laying it out would take seconds
constexpr int PictureSize = 32;    ///< pixels
constexpr int PictureSpacing = 14;
constexpr qreal ScreenShare = 0.6; ///< of the screen's width and height, at most, for the text

struct Button
{
    CMessageBox::StandardButton value;
    const char *text;
};

constexpr Button Buttons[] = {
    {CMessageBox::Ok, QT_TRANSLATE_NOOP("CMessageBox", "OK")},
    {CMessageBox::Save, QT_TRANSLATE_NOOP("CMessageBox", "Save")},
    {CMessageBox::SaveAll, QT_TRANSLATE_NOOP("CMessageBox", "SaveAll")},
    {CMessageBox::Open, QT_TRANSLATE_NOOP("CMessageBox", "Open")},
    {CMessageBox::Yes, QT_TRANSLATE_NOOP("CMessageBox", "Yes")},
    {CMessageBox::YesToAll, QT_TRANSLATE_NOOP("CMessageBox", "YesToAll")},
    {CMessageBox::No, QT_TRANSLATE_NOOP("CMessageBox", "No")},
    {CMessageBox::NoToAll, QT_TRANSLATE_NOOP("CMessageBox", "NoToAll")},
    {CMessageBox::Abort, QT_TRANSLATE_NOOP("CMessageBox", "Abort")},
    {CMessageBox::Retry, QT_TRANSLATE_NOOP("CMessageBox", "Retry")},
    {CMessageBox::Ignore, QT_TRANSLATE_NOOP("CMessageBox", "Ignore")},
    {CMessageBox::Close, QT_TRANSLATE_NOOP("CMessageBox", "Close")},
    {CMessageBox::Cancel, QT_TRANSLATE_NOOP("CMessageBox", "Cancel")},
    {CMessageBox::Discard, QT_TRANSLATE_NOOP("CMessageBox", "Discard")},
    {CMessageBox::Help, QT_TRANSLATE_NOOP("CMessageBox", "Help")},
    {CMessageBox::Apply, QT_TRANSLATE_NOOP("CMessageBox", "Apply")},
    {CMessageBox::Reset, QT_TRANSLATE_NOOP("CMessageBox", "Reset")},
    {CMessageBox::RestoreDefaults, QT_TRANSLATE_NOOP("CMessageBox", "RestoreDefaults")},
};

/// In the order in which they are taken for "leave all as it is".
constexpr CMessageBox::StandardButton EscapeButtons[] = {CMessageBox::Cancel, CMessageBox::No, CMessageBox::Abort,
                                                         CMessageBox::Close, CMessageBox::NoToAll};
constexpr int UnsafeButtons =
    CMessageBox::Discard | CMessageBox::Reset | CMessageBox::RestoreDefaults | CMessageBox::Help;

struct Kind
{
    const char *picture; ///< none for some, and that is meant so
    const char *name;    ///< the icon in words, for screen readers
};

// By icon.
constexpr Kind Kinds[] = {
    {nullptr, nullptr},
    {nullptr, QT_TRANSLATE_NOOP("CMessageBox", "Information")},
    {":/Images/MsgQuestion.png", QT_TRANSLATE_NOOP("CMessageBox", "Question")},
    {":/Images/MsgInfo.png", QT_TRANSLATE_NOOP("CMessageBox", "Success")},
    {nullptr, QT_TRANSLATE_NOOP("CMessageBox", "Warning")},
    {":/Images/MsgError.png", QT_TRANSLATE_NOOP("CMessageBox", "Error")},
};
static_assert(std::size(Kinds) == CMessageBox::Critical + 1);

QString shortened(const QString &text)
{
    return text.size() > LongestText ? text.left(LongestText) + QChar(0x2026) : text;
}

QDialogButtonBox::StandardButton toolkitButton(CMessageBox::StandardButton button)
{
    return static_cast<QDialogButtonBox::StandardButton>(button);
}
} // namespace

CMessageBox::CMessageBox(QWidget *parent)
    : QDialog(parent)
    , m_ui(std::make_unique<Ui::CMessageBox>())
{
    m_ui->setupUi(this);
    m_ui->textLabel->setAutoFillBackground(false);
    m_ui->textArea->viewport()->setAutoFillBackground(false);
    connect(m_ui->buttonBox, &QDialogButtonBox::clicked, this,
            [this](QAbstractButton *button) { done(m_ui->buttonBox->standardButton(button)); });
}

CMessageBox::CMessageBox(Icon icon, const QString &title, const QString &text, StandardButtons buttons, QWidget *parent)
    : CMessageBox(parent)
{
    setWindowTitle(title);
    setIcon(icon);
    setText(text);
    setStandardButtons(buttons);
}

CMessageBox::~CMessageBox() = default;

void CMessageBox::setIcon(Icon icon)
{
    m_icon = icon;
    const Kind &kind = Kinds[icon];
    const bool hasPicture = kind.picture != nullptr;
    // An icon, unlike a pixmap, takes the picture that was drawn for the screen's scale.
    m_ui->iconLabel->setPixmap(QIcon(QLatin1String(kind.picture)).pixmap(QSize(PictureSize, PictureSize)));
    m_ui->iconLabel->setVisible(hasPicture);
    m_ui->gridLayout->setHorizontalSpacing(hasPicture ? PictureSpacing : 0);
    m_ui->iconLabel->setAccessibleName(tr(kind.name));
    setAccessibleDescription(tr(kind.name)); // the icons without a picture as well
    fit();
}

void CMessageBox::setText(const QString &text)
{
    m_text = text;
    fit();
}

void CMessageBox::setTextFormat(Qt::TextFormat format)
{
    m_ui->textLabel->setTextFormat(format);
    fit();
}

void CMessageBox::setStandardButtons(StandardButtons buttons)
{
    m_ui->buttonBox->clear();
    for (const Button &button : Buttons) {
        if (buttons.testFlag(button.value)) {
            QPushButton *added = m_ui->buttonBox->addButton(toolkitButton(button.value));
            added->setText(tr(button.text));
            added->setIcon(QIcon()); // some systems' styles put one of their own, of another look
        }
    }
    if (QPushButton *safe = m_ui->buttonBox->button(toolkitButton(safeButton()))) {
        safe->setDefault(true);
        safe->setFocus();
    }
    fit();
}

CMessageBox::StandardButtons CMessageBox::standardButtons() const
{
    return {static_cast<int>(m_ui->buttonBox->standardButtons())};
}

CMessageBox::StandardButton CMessageBox::escapeButton() const
{
    const StandardButtons present = standardButtons();
    for (const StandardButton button : EscapeButtons) {
        if (present.testFlag(button)) {
            return button;
        }
    }
    const StandardButtons closing = present & ~StandardButtons(Help);
    const auto candidates = static_cast<quint32>(closing != NoButton ? closing : present);
    return qPopulationCount(candidates) == 1 ? static_cast<StandardButton>(candidates) : NoButton;
}

/// The button that Enter presses.
CMessageBox::StandardButton CMessageBox::safeButton() const
{
    const StandardButton escape = escapeButton();
    const StandardButtons safe = escape != NoButton ? escape : standardButtons() & ~StandardButtons(UnsafeButtons);
    const auto *const first = std::find_if(std::begin(Buttons), std::end(Buttons),
                                           [safe](const Button &button) { return safe.testFlag(button.value); });
    return first == std::end(Buttons) ? NoButton : first->value;
}

void CMessageBox::reject()
{
    const StandardButton button = escapeButton();
    if (button != NoButton || standardButtons() == NoButton) {
        done(button);
    }
}

void CMessageBox::showEvent(QShowEvent *event)
{
    fit();
    adjustSize(); // before the dialog is centred on its parent
    QDialog::showEvent(event);
    QAccessibleEvent announcement(this, QAccessible::Alert);
    QAccessible::updateAccessibility(&announcement);
}

/// Shows the text and makes the box as large as it needs and the screen allows; no size before the box has a style and
/// a screen.
void CMessageBox::fit()
{
    QLabel *label = m_ui->textLabel;
    const bool isPlain = label->textFormat() == Qt::PlainText; // markup is the program's own and not to be cut
    const QString text = isPlain ? shortened(m_text) : m_text;
    label->setText(text);
    if (!testAttribute(Qt::WA_WState_Polished)) {
        return;
    }
    const QSize most = screen()->availableSize() * ScreenShare;
    const int widest = std::min(LongestLine, most.width());
    label->setWordWrap(false);
    QSize size = label->sizeHint();
    if (size.width() > widest) {
        label->setWordWrap(true);
        if (isPlain && label->minimumSizeHint().width() > widest) {
            label->setText(wrappedLines(text, label->font(), widest).join(QLatin1Char('\n')));
        }
        size = QSize(widest, label->heightForWidth(widest));
    }
    const bool isScrolling = size.height() > most.height();
    const int scrollBar = isScrolling ? m_ui->textArea->verticalScrollBar()->sizeHint().width() : 0;
    const int lowest = m_ui->iconLabel->isHidden() ? 0 : PictureSize;
    m_ui->textArea->setFixedSize(std::max(size.width() + scrollBar, ShortestLine),
                                 std::clamp(size.height(), lowest, std::max(lowest, most.height())));
    m_ui->textArea->setFocusPolicy(isScrolling ? Qt::StrongFocus : Qt::NoFocus);
}

CMessageBox::StandardButton CMessageBox::run(Icon icon, QWidget *parent, const QString &title, const QString &text,
                                             StandardButtons buttons)
{
    const QPointer<CMessageBox> box = new CMessageBox(icon, title, text, buttons, parent);
    const auto pressed = static_cast<StandardButton>(box->exec());
    delete box;
    return pressed;
}
