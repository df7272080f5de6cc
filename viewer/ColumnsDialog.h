#pragma once

#include "viewer/core/ColumnLayout.h"

#include <QDialog>

class QListWidget;
class QPushButton;

/// Which columns a table of frames has and in which order.
class ColumnsDialog : public QDialog
{
    Q_OBJECT

public:
    explicit ColumnsDialog(const ColumnLayout &layout, QWidget *parent = nullptr);

    ColumnLayout columnLayout() const;

private slots:
    void slot_update();

private:
    void fill(const ColumnLayout &layout);
    void moveBy(int step);

    QListWidget *m_list;
    QPushButton *m_up;
    QPushButton *m_down;
    QPushButton *m_ok;
};
