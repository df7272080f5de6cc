#pragma once

#include "viewer/core/CaptureDatabases.h"

#include <QWidget>

class QPlainTextEdit;
class QPushButton;
class QTableWidget;
class QTableWidgetItem;

/// The databases of a capture: their files and channels, and what was found wrong in them.
class DatabasePanel : public QWidget
{
    Q_OBJECT

public:
    enum Column { File, Channels, Messages, Signals, State, ColumnCount };

    /// databases must outlive this.
    explicit DatabasePanel(CaptureDatabases &databases, QWidget *parent = nullptr);

    /// Shows what is wrong with an entry.
    void select(int index);

signals:
    void sig_addWanted();

private slots:
    void slot_refresh();
    void slot_selectionChanged();
    void slot_changed(QTableWidgetItem *item);

private:
    QWidget *makeTable();
    QWidget *makeButtons();
    void fillRow(int row);
    static QString stateText(const CaptureDatabases::Entry &entry);
    static QString detailText(const CaptureDatabases::Entry &entry);

    CaptureDatabases &m_databases;
    QTableWidget *m_table = nullptr;
    QPlainTextEdit *m_details = nullptr;
    QPushButton *m_remove = nullptr;
    QPushButton *m_reload = nullptr;
};
