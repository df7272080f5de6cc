#include "viewer/FrameTableActions.h"

#include "viewer/FrameTableView.h"

#include <QAction>
#include <QMenu>

template<typename Function>
QAction *FrameTableActions::add(const char *name, const QString &text, const QKeySequence &key, Function function)
{
    auto *action = new QAction(text, this);
    action->setObjectName(QLatin1String(name));
    action->setShortcut(key);
    action->setShortcutContext(Qt::WidgetShortcut);
    connect(action, &QAction::triggered, &m_view, [this, function] {
        if (m_view.currentRow() >= 0) {
            function(m_view);
        }
    });
    m_view.addAction(action);
    m_actions.append(action);
    return action;
}

void FrameTableActions::addSeparator()
{
    auto *separator = new QAction(this);
    separator->setSeparator(true);
    m_actions.append(separator);
}

FrameTableActions::FrameTableActions(FrameTableView &view)
    : QObject(&view)
    , m_view(view)
{
    const auto keys = [](const char *text) {
        return QKeySequence(QLatin1String(text));
    };
    m_ofCell = {add("onlyThese", tr("&Only these"), keys("Ctrl+Return"),
                    [](FrameTableView &table) { emit table.sig_filterWanted(table.cellFilter(), false); }),
                add("notThese", tr("&Not these"), keys("Ctrl+Shift+Return"),
                    [](FrameTableView &table) { emit table.sig_filterWanted(table.cellFilter(), true); }),
                add("findThese", tr("&Find next like this"), keys("Ctrl+F3"),
                    [](FrameTableView &table) { emit table.sig_findWanted(table.cellFilter(), false); }),
                add("findTheseBackward", tr("Find &previous like this"), keys("Ctrl+Shift+F3"),
                    [](FrameTableView &table) { emit table.sig_findWanted(table.cellFilter(), true); }),
                add("colorThese", tr("Co&lour these..."), keys("Ctrl+K"),
                    [](FrameTableView &table) { emit table.sig_colorsWanted(table.cellFilter()); })};
    addSeparator();
    add("fromHere", tr("From h&ere on"), {}, [](FrameTableView &table) {
        emit table.sig_filterWanted(QStringLiteral("number >= %1").arg(table.cellRow() + 1), false);
    });
    add("toHere", tr("&Up to here"), {}, [](FrameTableView &table) {
        emit table.sig_filterWanted(QStringLiteral("number <= %1").arg(table.cellRow() + 1), false);
    });
    addSeparator();
    add("markThis", tr("Time &zero here"), {},
        [](FrameTableView &table) { emit table.sig_markWanted(table.cellRow()); });
    add("bookmarkThis", tr("&Bookmark..."), {},
        [](FrameTableView &table) { emit table.sig_bookmarkWanted(table.cellRow()); });
    addSeparator();
    add("copy", tr("&Copy"), QKeySequence::Copy, [](FrameTableView &table) { table.copy(false); });
    add("copyCsv", tr("Copy as C&SV"), keys("Ctrl+Shift+C"), [](FrameTableView &table) { table.copy(true); });
}

void FrameTableActions::fill(QMenu &menu)
{
    for (QAction *action : qAsConst(m_ofCell)) {
        action->setToolTip(m_view.cellFilter());
    }
    menu.addActions(m_actions);
}
