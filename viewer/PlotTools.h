#pragma once

#include <QToolBar>

class PlotArea;
class QAction;
class ValueEdit;

/// What stands above the plots: the line for a new curve and buttons for the view.
class PlotTools : public QToolBar
{
    Q_OBJECT

public:
    /// area must outlive this.
    explicit PlotTools(PlotArea &area, QWidget *parent = nullptr);

    ValueEdit &value() { return *m_value; }
    /// Times as the clock shows them.
    QAction &clock() { return *m_clock; }
    QAction &ownWindow() { return *m_ownWindow; }
    /// Whether there are views to go back and forward to.
    void updateViews();

signals:
    void sig_saveWanted(bool isWhole);

private:
    QAction *add(const QString &text, const QString &tip);
    void addSaveMenu();

    PlotArea &m_area;
    ValueEdit *m_value;
    QAction *m_back;
    QAction *m_forward;
    QAction *m_clock;
    QAction *m_ownWindow;
};
