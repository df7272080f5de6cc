#include "app/GUI_SoftwareInfo.h"

#include "app/HttpClient.h"
#include "app/Release.h"
#include "ui_GUI_SoftwareInfo.h"

#include <QIcon>

namespace {
constexpr int LogoSize = 48; ///< device-independent pixels

/// What a click on the address opens; empty where it is neither a web nor a mail address.
QString linkOf(const QString &address)
{
    if (isWebAddress(QUrl(address))) {
        return address;
    }
    const bool isMail = address.count(QLatin1Char('@')) == 1 && !address.contains(QLatin1Char(' '));
    return isMail ? QStringLiteral("mailto:") + address : QString();
}

void showAddress(QLabel *label, const QString &address)
{
    const QString link = linkOf(address);
    if (link.isEmpty()) {
        label->setTextFormat(Qt::PlainText);
        label->setText(address);
        return;
    }
    label->setTextFormat(Qt::RichText);
    label->setOpenExternalLinks(true);
    // Shift+Tab does not leave a link that is the very beginning of a text: a space of no width goes before it.
    label->setText(QStringLiteral("&#8203;<a href=\"%1\">%2</a>").arg(link.toHtmlEscaped(), address.toHtmlEscaped()));
}
} // namespace

GUI_SoftwareInfo::GUI_SoftwareInfo(const QString &supportAddress, QWidget *parent)
    : QDialog(parent)
    , m_ui(std::make_unique<Ui::GUI_SoftwareInfo>())
{
    m_ui->setupUi(this);
    m_ui->lbl_icon->setPixmap(QIcon(QStringLiteral(":/Logo/Logo16x16.ico")).pixmap(QSize(LogoSize, LogoSize)));
    m_ui->lbl_softwareVersion->setText(QStringLiteral("V") + programVersion());
    showAddress(m_ui->lbl_web, supportAddress);
    m_ui->label_web->setVisible(!supportAddress.isEmpty());
    m_ui->lbl_web->setVisible(!supportAddress.isEmpty());
    m_ui->btn_update->setFocus(); // not the link
    connect(m_ui->btn_update, &QPushButton::clicked, this, &GUI_SoftwareInfo::sig_update);
}

GUI_SoftwareInfo::~GUI_SoftwareInfo() = default;

void GUI_SoftwareInfo::setChecking(bool isChecking)
{
    m_ui->btn_update->setEnabled(!isChecking);
    m_ui->btn_update->setText(isChecking ? tr("Checking...") : tr("Check updates"));
    if (!isChecking) {
        m_ui->btn_update->setFocus(); // a button that is disabled loses it
    }
}
