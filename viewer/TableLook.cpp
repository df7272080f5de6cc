#include "viewer/TableLook.h"

#include "viewer/ColorRulesDialog.h"
#include "viewer/ColumnsDialog.h"
#include "viewer/FrameTableView.h"
#include "viewer/TableSettings.h"

TableLook::TableLook(TableSettings &settings, FrameTableView &table, FrameTableModel &frames)
    : QObject(&table)
    , m_settings(settings)
    , m_table(table)
    , m_frames(frames)
{
    table.setColumnLayout(settings.columns());
    slot_rulesChanged();
    connect(&settings, &TableSettings::sig_rulesChanged, this, &TableLook::slot_rulesChanged);
    connect(&table, &FrameTableView::sig_columnsChanged, this, &TableLook::slot_columnsChanged);
    connect(&table, &FrameTableView::sig_columnsWanted, this, &TableLook::slot_chooseColumns);
    connect(&table, &FrameTableView::sig_colorsWanted, this, &TableLook::slot_editColors);
}

void TableLook::slot_rulesChanged()
{
    m_frames.setRules(m_settings.rules());
}

void TableLook::slot_columnsChanged()
{
    m_settings.setColumns(m_table.columnLayout());
}

void TableLook::slot_editColors(const QString &filter)
{
    auto *dialog = new ColorRulesDialog(m_settings.rules(), m_frames.capture(), filter, &m_table);
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    connect(dialog, &ColorRulesDialog::sig_rulesTaken, &m_settings, &TableSettings::setRules);
    dialog->open();
}

void TableLook::slot_chooseColumns()
{
    auto *dialog = new ColumnsDialog(m_table.columnLayout(), &m_table);
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    connect(dialog, &QDialog::accepted, this, [this, dialog] {
        m_table.setColumnLayout(dialog->columnLayout());
        slot_columnsChanged();
    });
    dialog->open();
}
