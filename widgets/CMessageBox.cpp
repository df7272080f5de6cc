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
constexpr const char *StyleSheet =
    "QDialog{background-color:rgb(255 , 255 , 255);}"
    "QPushButton{background-color:#E0E0E0;border: 1px solid #A6A6A6;border-radius:5px;}"
    "QPushButton:hover{color:white;background-color:#4188FF;border-radius:5px;border: 0px}"
    "QPushButton:pressed{padding-left:3px;padding-top:3px;}";
/// The sheet above has no look for the button that Enter presses; this one lies on the buttons' box.
constexpr const char *FocusStyleSheet = "QPushButton:focus{border: 2px solid #1C5FD0;}";

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
constexpr int LosingButtons = CMessageBox::Discard | CMessageBox::Reset | CMessageBox::RestoreDefaults;

QString picturePath(CMessageBox::Icon icon)
{
    switch (icon) {
    case CMessageBox::Question:
        return QStringLiteral(":/Images/MsgQuestion.png");
    case CMessageBox::Success:
        return QStringLiteral(":/Images/MsgInfo.png");
    case CMessageBox::Critical:
        return QStringLiteral(":/Images/MsgError.png");
    case CMessageBox::NoIcon:
    case CMessageBox::Information:
    case CMessageBox::Warning:
        break; // no picture, and that is meant so
    }
    return {};
}

/// The icon in words, for screen readers.
QString kindOf(CMessageBox::Icon icon)
{
    switch (icon) {
    case CMessageBox::NoIcon:
        break;
    case CMessageBox::Information:
        return CMessageBox::tr("Information");
    case CMessageBox::Question:
        return CMessageBox::tr("Question");
    case CMessageBox::Success:
        return CMessageBox::tr("Success");
    case CMessageBox::Warning:
        return CMessageBox::tr("Warning");
    case CMessageBox::Critical:
        return CMessageBox::tr("Error");
    }
    return {};
}

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
    setWindowFlag(Qt::WindowContextHelpButtonHint, false);
    setStyleSheet(QLatin1String(StyleSheet));
    m_ui->buttonBox->setStyleSheet(QLatin1String(FocusStyleSheet));
    m_ui->textLabel->setAutoFillBackground(false);
    m_ui->textArea->viewport()->setAutoFillBackground(false);
    m_ui->gridLayout->setSizeConstraint(QLayout::SetFixedSize);
    m_ui->iconLabel->hide();
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
    const QString path = picturePath(icon);
    // An icon, unlike a pixmap, takes the picture that was drawn for the screen's scale.
    m_ui->iconLabel->setPixmap(QIcon(path).pixmap(QSize(PictureSize, PictureSize)));
    m_ui->iconLabel->setVisible(!path.isEmpty());
    m_ui->gridLayout->setHorizontalSpacing(path.isEmpty() ? 0 : PictureSpacing);
    m_ui->iconLabel->setAccessibleName(kindOf(icon));
    setAccessibleDescription(kindOf(icon)); // the icons without a picture as well
    fit();
}

CMessageBox::Icon CMessageBox::icon() const
{
    return m_icon;
}

void CMessageBox::setText(const QString &text)
{
    m_text = text;
    m_ui->textLabel->setText(shortened(text));
    fit();
}

QString CMessageBox::text() const
{
    return m_text;
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
    setDefaultButton(m_default);
    fit();
}

CMessageBox::StandardButtons CMessageBox::standardButtons() const
{
    return {static_cast<int>(m_ui->buttonBox->standardButtons())};
}

void CMessageBox::setDefaultButton(StandardButton button)
{
    m_default = button;
    if (QPushButton *chosen = m_ui->buttonBox->button(toolkitButton(defaultButton()))) {
        chosen->setDefault(true);
        chosen->setFocus();
    }
}

CMessageBox::StandardButton CMessageBox::defaultButton() const
{
    const StandardButtons present = standardButtons();
    if (m_default != NoButton && present.testFlag(m_default)) {
        return m_default;
    }
    if (escapeButton() != NoButton) {
        return escapeButton();
    }
    for (const Button &button : Buttons) {
        if (present.testFlag(button.value) && (button.value & (LosingButtons | Help)) == 0) {
            return button.value;
        }
    }
    return NoButton;
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
    const auto *const only =
        std::find_if(std::begin(Buttons), std::end(Buttons), [closing, present](const Button &button) {
            return closing == button.value || present == button.value;
        });
    return only == std::end(Buttons) ? NoButton : only->value;
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

/// Makes the box as large as its text needs and the screen allows; nothing before the box has a style and a screen.
void CMessageBox::fit()
{
    if (!testAttribute(Qt::WA_WState_Polished)) {
        return;
    }
    const QSize most = screen()->availableSize() * ScreenShare;
    const int widest = std::min(LongestLine, most.width());
    QLabel *label = m_ui->textLabel;
    label->setWordWrap(false);
    const bool isPlain = label->textFormat() == Qt::PlainText; // markup is the program's own and not to be cut
    const QString text = isPlain ? shortened(m_text) : m_text;
    label->setText(text);
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
                                             StandardButtons buttons, Qt::TextFormat format)
{
    const QPointer<CMessageBox> box = new CMessageBox(icon, title, text, buttons, parent);
    box->setTextFormat(format);
    const auto pressed = static_cast<StandardButton>(box->exec());
    delete box;
    return pressed;
}

CMessageBox::StandardButton CMessageBox::information(QWidget *parent, const QString &title, const QString &text,
                                                     StandardButtons buttons, Qt::TextFormat format)
{
    return run(Information, parent, title, text, buttons, format);
}

CMessageBox::StandardButton CMessageBox::question(QWidget *parent, const QString &title, const QString &text,
                                                  StandardButtons buttons, Qt::TextFormat format)
{
    return run(Question, parent, title, text, buttons, format);
}

CMessageBox::StandardButton CMessageBox::success(QWidget *parent, const QString &title, const QString &text,
                                                 StandardButtons buttons, Qt::TextFormat format)
{
    return run(Success, parent, title, text, buttons, format);
}

CMessageBox::StandardButton CMessageBox::warning(QWidget *parent, const QString &title, const QString &text,
                                                 StandardButtons buttons, Qt::TextFormat format)
{
    return run(Warning, parent, title, text, buttons, format);
}

CMessageBox::StandardButton CMessageBox::critical(QWidget *parent, const QString &title, const QString &text,
                                                  StandardButtons buttons, Qt::TextFormat format)
{
    return run(Critical, parent, title, text, buttons, format);
}
