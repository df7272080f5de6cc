#pragma once

#include "widgets/CMessageBox.h"

#include <QCoreApplication>
#include <QList>
#include <QString>

#include <functional>

/// The message boxes of one window, none of which makes its caller wait. Messages may come in masses, from frames sent
/// every millisecond for instance: what the user has to click away stays bounded, and nothing is dropped silently.
class WindowMessages
{
    Q_DECLARE_TR_FUNCTIONS(WindowMessages)

public:
    /// The window owns the boxes and must outlive this object.
    explicit WindowMessages(QWidget &window);

    /// Shows a text as it is. One that is on screen with this icon is not shown again; beyond five open messages,
    /// further ones are only counted, and the newest open message says how many they are.
    void show(const QString &text, CMessageBox::Icon icon);
    /// Asks with Yes and No, unless it is asking just this; markup in the text works. onYes runs when Yes is pressed,
    /// never after the window has gone.
    void ask(const QString &text, const std::function<void()> &onYes);

private:
    QList<CMessageBox *> openMessages() const;

    QWidget &m_window;
    int m_unshown = 0; ///< since the newest open message was opened
};
