#include "viewer/TableSettings.h"

#include <utility>

namespace {

constexpr const char *RulesKey = "colorRules";
constexpr const char *ColumnsKey = "columns";
constexpr const char *FiltersKey = "filters";
constexpr int StoreMs = 300;

} // namespace

TableSettings::TableSettings(ViewerSettings settings, QObject *parent)
    : QObject(parent)
    , m_settings(std::move(settings))
    , m_rules(ColorRule::fromJson(m_settings.value(RulesKey).toByteArray()).value_or(ColorRule::standard()))
    , m_columns(ColumnLayout::fromJson(m_settings.value(ColumnsKey).toByteArray()))
{
    const QStringList filters = m_settings.value(FiltersKey).toStringList();
    for (const QString &filter : filters) {
        if (!filter.trimmed().isEmpty() && filter.size() <= Filter::MaxLength && m_filters.size() < MaxFilters) {
            m_filters.append(filter);
        }
    }
    m_columnsTimer.setSingleShot(true);
    m_columnsTimer.setInterval(StoreMs);
    connect(&m_columnsTimer, &QTimer::timeout, this, &TableSettings::slot_storeColumns);
}

TableSettings::~TableSettings()
{
    if (m_columnsTimer.isActive()) {
        slot_storeColumns();
    }
}

void TableSettings::slot_storeColumns()
{
    m_settings.setValue(ColumnsKey, m_columns.toJson());
}

void TableSettings::setRules(QVector<ColorRule> rules)
{
    m_rules = std::move(rules);
    m_settings.setValue(RulesKey, ColorRule::toJson(m_rules));
    emit sig_rulesChanged();
}

void TableSettings::setColumns(const ColumnLayout &columns)
{
    if (columns != m_columns) {
        m_columns = columns;
        m_columnsTimer.start();
    }
}

void TableSettings::addFilter(const QString &filter)
{
    const QString trimmed = filter.trimmed();
    if (trimmed.isEmpty()) {
        return;
    }
    m_filters.removeAll(trimmed);
    m_filters.prepend(trimmed);
    m_filters = m_filters.mid(0, MaxFilters);
    m_settings.setValue(FiltersKey, m_filters);
}
