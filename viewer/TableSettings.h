#pragma once

#include "viewer/core/ColorRules.h"
#include "viewer/core/ColumnLayout.h"
#include "viewer/ViewerSettings.h"

#include <QObject>
#include <QTimer>

/// What all tabs of frames have in common and keep from one run to the next: colour rules, columns, and the filters
/// that were taken lately.
class TableSettings : public QObject
{
    Q_OBJECT

public:
    static constexpr int MaxFilters = 20;

    /// Reads what is stored; what is damaged is as it was in the beginning.
    explicit TableSettings(ViewerSettings settings, QObject *parent = nullptr);
    ~TableSettings() override;

    const QVector<ColorRule> &rules() const { return m_rules; }
    void setRules(QVector<ColorRule> rules);
    const ColumnLayout &columns() const { return m_columns; }
    /// They are stored a moment later: a column that is drawn wider changes with every step of the mouse.
    void setColumns(const ColumnLayout &columns);
    /// The last one first.
    const QStringList &filters() const { return m_filters; }
    void addFilter(const QString &filter);

signals:
    void sig_rulesChanged();

private slots:
    void slot_storeColumns();

private:
    ViewerSettings m_settings;
    QVector<ColorRule> m_rules;
    ColumnLayout m_columns;
    QTimer m_columnsTimer;
    QStringList m_filters;
};
