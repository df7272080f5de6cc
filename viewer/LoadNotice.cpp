#include "viewer/LoadNotice.h"

#include "viewer/core/OpenCapture.h"

#include <QDir>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QStyle>

LoadNotice::LoadNotice(const OpenCapture &capture, QWidget *parent)
    : QFrame(parent)
    , m_capture(capture)
    , m_text(new QLabel)
{
    setObjectName(QStringLiteral("loadNotice"));
    setFrameShape(QFrame::StyledPanel);
    setAutoFillBackground(true);
    setBackgroundRole(QPalette::ToolTipBase);
    auto *layout = new QHBoxLayout(this);
    auto *icon = new QLabel;
    const int size = style()->pixelMetric(QStyle::PM_SmallIconSize);
    icon->setPixmap(style()->standardIcon(QStyle::SP_MessageBoxWarning).pixmap(size));
    m_text->setObjectName(QStringLiteral("loadNoticeText"));
    m_text->setTextFormat(Qt::PlainText);
    m_text->setWordWrap(true);
    m_text->setForegroundRole(QPalette::ToolTipText);
    m_text->setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
    auto *again = new QPushButton(tr("&Load again"));
    again->setObjectName(QStringLiteral("loadAgain"));
    layout->addWidget(icon);
    layout->addWidget(m_text, 1);
    layout->addWidget(again);
    hide();
    connect(again, &QPushButton::clicked, this, &LoadNotice::sig_loadAgainWanted);
    connect(&capture, &OpenCapture::sig_progressChanged, this, &LoadNotice::slot_look);
}

void LoadNotice::slot_look()
{
    const bool isFailed = m_capture.loader().progress().state == LoadProgress::State::Failed;
    if (isFailed) {
        m_text->setText(QDir::toNativeSeparators(m_capture.path()) + QLatin1Char('\n') + m_capture.loader().error());
    }
    setVisible(isFailed);
}
