#pragma once

#include "capture/DataModel.h"

#include <QTableWidget>

#include <vector>

/// The rows of the send list, one prepared frame each. After a cell was edited, the row's DataModel, the user-role data
/// of its first cell, follows; the identifier is the only cell that is corrected. By keyboard: F2 or typing edits a
/// cell, Tab and Shift+Tab go from one editable cell to the next and at the ends out of the table, with Ctrl from
/// anywhere; Space ticks the row.
class SendListTable : public QTableWidget
{
    Q_OBJECT

public:
    static constexpr int MaxRows = 1000;

    explicit SendListTable(QWidget *parent = nullptr);

    /// A row with an empty standard frame, sent once; nothing when there are MaxRows.
    void appendRow();
    /// False when no row is the current one.
    bool removeCurrentRow();
    void setAllTicked(bool isTicked);
    std::vector<DataModel> tickedRows() const;

protected:
    QModelIndex moveCursor(CursorAction action, Qt::KeyboardModifiers modifiers) override;
    bool focusNextPrevChild(bool next) override;
    void keyPressEvent(QKeyEvent *event) override;

private:
    void followCell(int row, int column);
    DataModelCells cellsOf(int row) const;
    void fillCell(int row, int column, const QString &text, const QVariant &value = {});
    void renumber(int firstRow);
    QModelIndex nextEditableCell(bool forward) const;
};
