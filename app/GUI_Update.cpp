#include "app/GUI_Update.h"

#include "ui_GUI_Update.h"

#include <QIcon>
#include <QKeyEvent>

#include <array>
#include <utility>

namespace {
constexpr int IconSize = 70;         ///< pixels
constexpr int OnlyButtonWidth = 220; ///< pixels, at least
constexpr int OneOfTwoButtons = 160; ///< pixels, at least

/// What a state shows above its text.
struct Outcome
{
    const char *headline;
    const char *picture;
};

/// By state.
constexpr std::array<Outcome, 3> Outcomes{{
    {QT_TRANSLATE_NOOP("GUI_Update", "This is the latest version"), ":/128x128/Images/128x128/Success.png"},
    {QT_TRANSLATE_NOOP("GUI_Update", "Check upgrade failure"), ":/128x128/Images/128x128/Error.png"},
    {QT_TRANSLATE_NOOP("GUI_Update", "New version detected"), ":/128x128/Images/128x128/Download.png"},
}};
} // namespace

GUI_Update::GUI_Update(QWidget *parent, QString webSite)
    : QDialog(parent)
    , m_ui(std::make_unique<Ui::GUI_Update>())
    , m_webSite(std::move(webSite))
{
    m_ui->setupUi(this);
    connect(m_ui->btn_ok, &QToolButton::clicked, this, &QDialog::accept);
    connect(m_ui->btn_cancel, &QToolButton::clicked, this, &QDialog::reject);
    connect(m_ui->btn_update, &QToolButton::clicked, this, &GUI_Update::sig_update);
    setState(UpToDate);
}

GUI_Update::~GUI_Update() = default;

void GUI_Update::setState(int state)
{
    if (state < UpToDate || state > NewVersion) {
        return;
    }
    const Outcome &outcome = Outcomes.at(static_cast<std::size_t>(state));
    m_ui->lbl_icon->setPixmap(QIcon(QLatin1String(outcome.picture)).pixmap(QSize(IconSize, IconSize)));
    m_ui->lbl_tips1->setText(tr(outcome.headline));
    m_ui->lbl_tips2->setVisible(state != CheckFailed);
    m_ui->btn_ok->setVisible(state == UpToDate);
    m_ui->btn_update->setVisible(state == NewVersion);
    m_ui->btn_cancel->setVisible(state != UpToDate);
    m_ui->btn_cancel->setMinimumWidth(state == NewVersion ? OneOfTwoButtons : OnlyButtonWidth);
    if (state == CheckFailed) {
        m_ui->tbx_text->setHtml(adviceText());
    } else if (state == NewVersion) {
        m_ui->tbx_text->setUntrustedHtml(m_summary);
    }
    mainButton()->setFocus();
}

QString GUI_Update::adviceText() const
{
    const QString address = m_webSite.toHtmlEscaped();
    const QString link = address.isEmpty() ? QString() : QStringLiteral(" <a href=\"%1\">%1</a>").arg(address);
    return QStringLiteral("<p>%1</p><p>%2%3</p>")
        .arg(tr("You are advised to check that the network connection is normal and try again"),
             tr("You can choose to download the installation package from the official website"), link);
}

QToolButton *GUI_Update::mainButton() const
{
    for (QToolButton *button : {m_ui->btn_ok, m_ui->btn_update}) {
        if (!button->isHidden()) {
            return button;
        }
    }
    return m_ui->btn_cancel;
}

void GUI_Update::setSummary(const QString &summary)
{
    m_summary = summary;
    m_ui->tbx_text->setUntrustedHtml(summary);
}

void GUI_Update::setVersionLine(const QString &line)
{
    m_ui->lbl_tips2->setText(line);
}

void GUI_Update::showEvent(QShowEvent *event)
{
    QDialog::showEvent(event);
    mainButton()->setFocus();
}

void GUI_Update::keyPressEvent(QKeyEvent *event)
{
    auto *button = qobject_cast<QToolButton *>(focusWidget());
    const bool isEnter = event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter;
    if (isEnter && button != nullptr && button->isVisible()) {
        button->click();
        return;
    }
    QDialog::keyPressEvent(event);
}
