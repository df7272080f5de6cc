#pragma once

#include "viewer/core/BusLoadMemory.h"

#include <QObject>

class CaptureTab;
class QAction;
class QMenu;
class QMenuBar;
class QTabWidget;

/// The menu "Analyse", and the windows that it opens for the captures in tabs.
class AnalyseMenu : public QObject
{
    Q_OBJECT

public:
    /// Belongs to bar. tabs: must outlive this.
    AnalyseMenu(QMenuBar &bar, QTabWidget &tabs, BusLoadMemory memory);

    QMenu &menu() { return m_menu; }

private slots:
    void slot_tabsChanged();
    void slot_compare();
    void slot_compareAtMark();
    void slot_periods();
    void slot_busLoad();

private:
    void add(const char *name, const QString &text, const char *key, void (AnalyseMenu::*slot)());
    CaptureTab *currentTab() const;

    QTabWidget &m_tabs;
    BusLoadMemory m_memory;
    QMenu &m_menu;
    QList<QAction *> m_actions;
};
