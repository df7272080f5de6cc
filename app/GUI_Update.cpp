#include "app/GUI_Update.h"

#include "ui_GUI_Update.h"

#include <QIcon>
#include <QKeyEvent>

namespace {
constexpr const char *StyleSheet = "QDialog{background-color:rgb(255 , 255 , 255);}"
                                   "QToolButton{background-color:#1e7eef; color:white; border-radius:18px;}"
                                   "QToolButton:hover{background-color:#4a98f3; color:white; border-radius:18px;}"
                                   "QToolButton:pressed{background-color:#1566c6; color:white; border-radius:18px;}"
                                   "QToolButton:focus{border:2px solid #0d3f7d;}";

constexpr int IconSize = 70;         ///< pixels
constexpr int OnlyButtonWidth = 220; ///< pixels, at least
constexpr int OneOfTwoButtons = 160; ///< pixels, at least

enum State { UpToDate = 0, CheckFailed = 1, NewVersion = 2 };

void showButton(QWidget *button, int minimumWidth)
{
    button->setMinimumWidth(minimumWidth);
    button->show();
}
} // namespace

class GUI_UpdatePrivate
{
public:
    explicit GUI_UpdatePrivate(QString webSite)
        : m_webSite(std::move(webSite))
    {
    }

    void showOutcome(const QString &headline, const char *picture);
    void showUpToDate();
    void showCheckFailed();
    void showNewVersion();
    /// The button for which Enter stands.
    QToolButton *mainButton() const;

    Ui::GUI_Update ui;
    const QString m_webSite;
    QString m_summary;
};

void GUI_UpdatePrivate::showOutcome(const QString &headline, const char *picture)
{
    const QString path = QStringLiteral(":/128x128/Images/128x128/%1.png").arg(QLatin1String(picture));
    ui.lbl_icon->setPixmap(QIcon(path).pixmap(QSize(IconSize, IconSize)));
    ui.lbl_tips1->setText(headline);
    for (QToolButton *button : {ui.btn_ok, ui.btn_update, ui.btn_cancel}) {
        button->hide();
    }
}

void GUI_UpdatePrivate::showUpToDate()
{
    showOutcome(GUI_Update::tr("This is the latest version"), "Success");
    showButton(ui.btn_ok, OnlyButtonWidth);
    ui.lbl_tips2->show();
}

void GUI_UpdatePrivate::showCheckFailed()
{
    showOutcome(GUI_Update::tr("Check upgrade failure"), "Error");
    showButton(ui.btn_cancel, OnlyButtonWidth);
    ui.lbl_tips2->hide();
    const QString advice =
        GUI_Update::tr("You are advised to check that the network connection is normal and try again");
    const QString otherWay =
        GUI_Update::tr("You can choose to download the installation package from the official website");
    const QString address = m_webSite.toHtmlEscaped();
    const QString link = address.isEmpty() ? QString() : QStringLiteral(" <a href=\"%1\">%1</a>").arg(address);
    ui.tbx_text->setHtml(QStringLiteral("<p>%1</p><p>%2%3</p>").arg(advice, otherWay, link));
}

void GUI_UpdatePrivate::showNewVersion()
{
    showOutcome(GUI_Update::tr("New version detected"), "Download");
    showButton(ui.btn_update, OneOfTwoButtons);
    showButton(ui.btn_cancel, OneOfTwoButtons);
    ui.lbl_tips2->show();
    ui.tbx_text->setUntrustedHtml(m_summary);
}

QToolButton *GUI_UpdatePrivate::mainButton() const
{
    for (QToolButton *button : {ui.btn_ok, ui.btn_update}) {
        if (!button->isHidden()) {
            return button;
        }
    }
    return ui.btn_cancel;
}

GUI_Update::GUI_Update(QWidget *parent, const QString &webSite)
    : QDialog(parent)
    , m_p(std::make_unique<GUI_UpdatePrivate>(webSite))
{
    m_p->ui.setupUi(this);
    setWindowFlag(Qt::WindowContextHelpButtonHint, false);
    setStyleSheet(QLatin1String(StyleSheet));
    connect(m_p->ui.btn_ok, &QToolButton::clicked, this, &QDialog::accept);
    connect(m_p->ui.btn_cancel, &QToolButton::clicked, this, &QDialog::reject);
    connect(m_p->ui.btn_update, &QToolButton::clicked, this, &GUI_Update::sig_update);
    setState(UpToDate);
}

GUI_Update::~GUI_Update() = default;

void GUI_Update::setState(int state)
{
    switch (static_cast<State>(state)) {
    case UpToDate:
        m_p->showUpToDate();
        break;
    case CheckFailed:
        m_p->showCheckFailed();
        break;
    case NewVersion:
        m_p->showNewVersion();
        break;
    }
    m_p->mainButton()->setFocus();
}

void GUI_Update::setSummary(const QString &summary)
{
    m_p->m_summary = summary;
    m_p->ui.tbx_text->setUntrustedHtml(summary);
}

void GUI_Update::setVersionLine(const QString &line)
{
    m_p->ui.lbl_tips2->setText(line);
}

void GUI_Update::showEvent(QShowEvent *event)
{
    QDialog::showEvent(event);
    m_p->mainButton()->setFocus();
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
