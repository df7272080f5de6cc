#pragma once

#include "viewer/core/FrameKey.h"

#include <QObject>

class OverviewModel;
class QAction;
class QTableView;

/// What can be done with the identifiers of an overview, as a menu and by keys.
class OverviewActions : public QObject
{
    Q_OBJECT

public:
    /// Belongs to view, which shows model through a proxy.
    OverviewActions(QTableView &view, const OverviewModel &model);

signals:
    void sig_filterWanted(const QString &filter, bool isNegated);
    void sig_histogramWanted(FrameKey key, quint16 channel);

private slots:
    void slot_selectionChanged();
    void slot_filter();
    void slot_histogram();

private:
    /// Of the model.
    QVector<int> selectedRows() const;

    QTableView &m_view;
    const OverviewModel &m_model;
    QList<QAction *> m_actions;
};
