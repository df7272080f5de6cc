#include "viewer/AnalyseMenu.h"

#include "viewer/BusLoadWindow.h"
#include "viewer/CaptureTab.h"
#include "viewer/ComparisonWindow.h"
#include "viewer/PeriodWindow.h"

#include <QAction>
#include <QMenuBar>
#include <QTabWidget>

#include <utility>

AnalyseMenu::AnalyseMenu(QMenuBar &bar, QTabWidget &tabs, BusLoadMemory memory)
    : QObject(&bar)
    , m_tabs(tabs)
    , m_memory(std::move(memory))
    , m_menu(*bar.addMenu(tr("&Analyse")))
{
    add("compare", tr("&Compare captures..."), "Ctrl+Shift+D", &AnalyseMenu::slot_compare);
    add("compareAtMark", tr("Compare before and after the &marked frame"), "Ctrl+Shift+M",
        &AnalyseMenu::slot_compareAtMark);
    m_menu.addSeparator();
    add("periods", tr("Histogram of &periods..."), "Ctrl+Shift+H", &AnalyseMenu::slot_periods);
    add("busLoad", tr("Bus &load..."), "Ctrl+Shift+L", &AnalyseMenu::slot_busLoad);
    connect(&tabs, &QTabWidget::currentChanged, this, &AnalyseMenu::slot_tabsChanged);
    slot_tabsChanged();
}

void AnalyseMenu::add(const char *name, const QString &text, const char *key, void (AnalyseMenu::*slot)())
{
    QAction *action = m_menu.addAction(text, this, slot, QKeySequence(QLatin1String(key)));
    action->setObjectName(QLatin1String(name));
    m_actions.append(action);
}

CaptureTab *AnalyseMenu::currentTab() const
{
    return qobject_cast<CaptureTab *>(m_tabs.currentWidget());
}

void AnalyseMenu::slot_tabsChanged()
{
    for (QAction *action : qAsConst(m_actions)) {
        action->setEnabled(currentTab() != nullptr);
    }
}

void AnalyseMenu::slot_compare()
{
    CaptureTab *a = currentTab();
    if (a == nullptr) {
        return;
    }
    auto *b = a;
    for (int i = 0; i < m_tabs.count() && b == a; ++i) {
        if (auto *other = qobject_cast<CaptureTab *>(m_tabs.widget(i))) {
            b = other;
        }
    }
    auto *window = new ComparisonWindow(m_tabs, m_tabs.window());
    const bool isOne = a == b;
    window->choose(a, isOne ? ComparisonWindow::BeforeMark : ComparisonWindow::All, b,
                   isOne ? ComparisonWindow::FromMark : ComparisonWindow::All);
    window->show();
}

/// The frame that is selected is marked when none is.
void AnalyseMenu::slot_compareAtMark()
{
    CaptureTab *tab = currentTab();
    if (tab == nullptr) {
        return;
    }
    if (tab->capture().mark() < 0 && tab->table().currentRow() >= 0) {
        tab->toggleMark();
    }
    auto *window = new ComparisonWindow(m_tabs, m_tabs.window());
    window->choose(tab, ComparisonWindow::BeforeMark, tab, ComparisonWindow::FromMark);
    window->show();
}

void AnalyseMenu::slot_periods()
{
    CaptureTab *tab = currentTab();
    if (tab == nullptr) {
        return;
    }
    const qint64 row = tab->table().currentRow();
    const BusFrame frame = row >= 0 ? tab->capture().store().frame(row) : BusFrame();
    PeriodWindow::open(*tab, frameKey(frame.identifier, frame.flags), frame.channel);
}

void AnalyseMenu::slot_busLoad()
{
    if (CaptureTab *tab = currentTab()) {
        BusLoadWindow::open(*tab, m_memory);
    }
}
