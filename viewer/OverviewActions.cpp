#include "viewer/OverviewActions.h"

#include "viewer/ByteDelegate.h"
#include "viewer/OverviewModel.h"

#include <QAction>
#include <QSortFilterProxyModel>
#include <QTableView>

OverviewActions::OverviewActions(QTableView &view, const OverviewModel &model)
    : QObject(&view)
    , m_view(view)
    , m_model(model)
{
    view.setItemDelegateForColumn(OverviewModel::Data, new ByteDelegate(&view));
    const auto add = [this](const char *name, const QString &text, void (OverviewActions::*slot)()) {
        auto *action = new QAction(text, this);
        action->setObjectName(QLatin1String(name));
        connect(action, &QAction::triggered, this, slot);
        m_view.addAction(action);
        m_actions.append(action);
    };
    add("onlyThese", tr("Only these"), &OverviewActions::slot_filter);
    add("notThese", tr("Not these"), &OverviewActions::slot_filter);
    add("histogram", tr("Histogram of its periods..."), &OverviewActions::slot_histogram);
    connect(view.selectionModel(), &QItemSelectionModel::selectionChanged, this,
            &OverviewActions::slot_selectionChanged);
    slot_selectionChanged();
}

QVector<int> OverviewActions::selectedRows() const
{
    const auto *proxy = qobject_cast<const QSortFilterProxyModel *>(m_view.model());
    QVector<int> rows;
    const QModelIndexList selected = m_view.selectionModel()->selectedRows();
    for (const QModelIndex &index : selected) {
        rows.append(proxy->mapToSource(index).row());
    }
    return rows;
}

void OverviewActions::slot_selectionChanged()
{
    const bool isAny = m_view.selectionModel()->hasSelection();
    for (QAction *action : qAsConst(m_actions)) {
        action->setEnabled(isAny);
    }
}

void OverviewActions::slot_filter()
{
    QStringList filters;
    for (const int row : selectedRows()) {
        filters.append(m_model.filterOf(row));
    }
    if (!filters.isEmpty()) {
        const QString several = QStringLiteral("((%1))").arg(filters.join(QStringLiteral(") or (")));
        emit sig_filterWanted(filters.size() == 1 ? filters.first() : several,
                              sender()->objectName() == QLatin1String("notThese"));
    }
}

void OverviewActions::slot_histogram()
{
    const QVector<int> rows = selectedRows();
    if (!rows.isEmpty()) {
        const IdentifierStatistics &identifier = m_model.identifier(rows.first());
        emit sig_histogramWanted(identifier.key, identifier.channel);
    }
}
