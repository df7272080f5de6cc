#include "app/WindowMessages.h"

#include <QVariant>

namespace {
constexpr int MaxOpenMessages = 5;
constexpr const char *MessageText = "messageText"; ///< a message's text without what was added later
} // namespace

WindowMessages::WindowMessages(QWidget &window)
    : m_window(window)
{
}

/// The newest last.
QList<CMessageBox *> WindowMessages::openMessages() const
{
    QList<CMessageBox *> open;
    for (CMessageBox *box : m_window.findChildren<CMessageBox *>(QString(), Qt::FindDirectChildrenOnly)) {
        if (box->isVisible() && box->property(MessageText).isValid()) {
            open.append(box);
        }
    }
    return open;
}

void WindowMessages::show(const QString &text, CMessageBox::Icon icon)
{
    const QList<CMessageBox *> messages = openMessages();
    for (const CMessageBox *message : messages) {
        if (message->icon() == icon && message->property(MessageText) == text) {
            return;
        }
    }
    if (messages.size() >= MaxOpenMessages) {
        ++m_unshown;
        CMessageBox *newest = messages.last();
        newest->setText(newest->property(MessageText).toString() + QStringLiteral("\n\n") +
                        tr("Further messages not shown: %1").arg(m_unshown));
        return;
    }
    const auto buttons = icon == CMessageBox::Question ? CMessageBox::Yes | CMessageBox::No
                                                       : CMessageBox::StandardButtons(CMessageBox::Ok);
    auto *box = new CMessageBox(icon, tr("Tips"), text, buttons, &m_window);
    box->setAttribute(Qt::WA_DeleteOnClose);
    box->setProperty(MessageText, text);
    m_unshown = 0;
    box->open();
}

void WindowMessages::ask(const QString &text, const std::function<void()> &onYes)
{
    for (const CMessageBox *box : m_window.findChildren<CMessageBox *>(QString(), Qt::FindDirectChildrenOnly)) {
        if (box->isVisible() && box->text() == text) {
            return;
        }
    }
    auto *box = new CMessageBox(CMessageBox::Question, tr("Tips"), text, CMessageBox::Yes | CMessageBox::No, &m_window);
    box->setAttribute(Qt::WA_DeleteOnClose);
    box->setTextFormat(Qt::RichText);
    QObject::connect(box, &QDialog::finished, &m_window, [onYes](int button) {
        if (button == CMessageBox::Yes) {
            onYes();
        }
    });
    box->open();
}
