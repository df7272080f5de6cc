#pragma once

#include <QKeySequence>
#include <QObject>

class FrameTableView;
class QAction;
class QMenu;

/// What can be done with the cell or the row that is current in a table of frames: each action is in the context menu
/// and has its keys while the table has the focus.
class FrameTableActions : public QObject
{
    Q_OBJECT

public:
    /// view must outlive this.
    explicit FrameTableActions(FrameTableView &view);

    /// All of them, for the cell that view.cellFilter() tells of.
    void fill(QMenu &menu);

private:
    template<typename Function>
    QAction *add(const char *name, const QString &text, const QKeySequence &key, Function function);
    void addSeparator();

    FrameTableView &m_view;
    QList<QAction *> m_actions;
    QList<QAction *> m_ofCell;
};
