#pragma once

#include <QColor>
#include <QTreeWidget>

/// The curves of a plot with their values at the cursors. A mark shows a curve or hides it; Del removes it, Ctrl+Up and
/// Ctrl+Down move it to another pane, Ctrl+Return changes its color, and so does its menu.
class PlotCurveList : public QTreeWidget
{
    Q_OBJECT

public:
    struct Row
    {
        QString name;
        QString problem; ///< why there is nothing to see; empty
        QColor color;
        int pane; ///< from 0
        bool isShown;
    };
    struct Values
    {
        QString first;
        QString second;
        QString difference;
    };

    explicit PlotCurveList(QWidget *parent = nullptr);

    void setRows(const QVector<Row> &rows);
    /// Of a row that is there.
    void setValues(int row, const Values &values);
    /// Whether the columns of the second cursor are there.
    void setSecondShown(bool isShown);
    int currentRow() const; ///< -1: none

signals:
    void sig_shownChanged(int row, bool isShown);
    void sig_removeWanted(int row);
    void sig_colorWanted(int row);
    /// step: -1 for the pane above, 1 for the one below.
    void sig_paneWanted(int row, int step);

protected:
    void keyPressEvent(QKeyEvent *event) override;
    void contextMenuEvent(QContextMenuEvent *event) override;

private slots:
    void slot_itemChanged(QTreeWidgetItem *item, int column);

private:
    void fillRow(QTreeWidgetItem &item, const Row &row) const;
};
