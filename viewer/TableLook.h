#pragma once

#include <QObject>
#include <QVector>

class FilterEdit;
class FrameTableModel;
class FrameTableView;
class TableSettings;

/// Gives a table of frames the columns and the colours of the settings, and lets one change them.
class TableLook : public QObject
{
    Q_OBJECT

public:
    /// All must outlive this.
    TableLook(TableSettings &settings, FrameTableView &table, FrameTableModel &frames);

public slots:
    /// Asks for the colours of rows; where filter is not empty, of those that pass it.
    void slot_editColors(const QString &filter = {});
    void slot_chooseColumns();

private slots:
    void slot_rulesChanged();
    void slot_columnsChanged();

private:
    TableSettings &m_settings;
    FrameTableView &m_table;
    FrameTableModel &m_frames;
};
