#pragma once

#include "device/CallQueue.h"
#include "viewer/core/OpenCapture.h"
#include "viewer/ValueTreeModel.h"

#include <QTimer>
#include <QWidget>

class QCheckBox;
class QLabel;
class QLineEdit;
class QPushButton;
class QTreeView;

/// All messages and signals with the values that they had last, at a row or at the end of the capture.
class ValuePanel : public QWidget
{
    Q_OBJECT

public:
    /// capture must outlive this.
    explicit ValuePanel(OpenCapture &capture, QWidget *parent = nullptr);

    void setSource(const std::shared_ptr<const DatabaseSignals> &source);
    /// -1: the end, also while the capture grows.
    void setRow(qint64 row);

signals:
    void sig_plotWanted(const QString &expression);
    void sig_filterWanted(const QString &filter);
    void sig_rowWanted(qint64 row);

protected:
    void showEvent(QShowEvent *event) override;

private slots:
    void slot_find();
    void slot_found();
    void slot_menu(const QPoint &position);
    void slot_currentChanged();

private:
    /// Looks for the values in so many milliseconds, or before.
    void findWithin(int milliseconds);
    void makeTree();
    QWidget *makeLine();
    QModelIndex current() const;
    QString filterOf(const QModelIndex &index) const;
    QString expressionOf(const QModelIndex &index) const;

    OpenCapture &m_capture;
    ValueTreeModel m_model;
    ValueTreeFilter m_shown;
    qint64 m_row = -1;
    qint64 m_found = -1; ///< row whose values are shown
    bool m_isOld = true;
    QTimer m_timer; ///< until it is looked again
    QLineEdit *m_search = nullptr;
    QCheckBox *m_onlySeen = nullptr;
    QLabel *m_state = nullptr;
    QPushButton *m_only = nullptr;
    QPushButton *m_plot = nullptr;
    QTreeView *m_tree = nullptr;
    CallQueue m_calls;  ///< from the threads below
    LastSignals m_last; ///< the last member: its thread ends before the others go
};
