#pragma once

#include "viewer/ViewerSettings.h"

#include <QMenu>

#include <functional>

class CaptureTab;

/// What can be done with the databases of the capture in front.
class SignalMenu : public QMenu
{
    Q_OBJECT

public:
    /// current: the tab in front; null where there is none.
    SignalMenu(ViewerSettings settings, std::function<CaptureTab *()> current, QWidget *parent = nullptr);

private slots:
    void slot_fill();

private:
    QAction *addTabAction(const QString &text, std::function<void(CaptureTab &)> function);

    ViewerSettings m_settings;
    std::function<CaptureTab *()> m_current;
    QMenu *m_recent;
    QMenu *m_remove;
    QAction *m_reload;
};
