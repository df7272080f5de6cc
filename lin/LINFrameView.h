#pragma once

#include "lin/LINFrameModel.h"

#include <QTableView>
#include <QTimer>

/// Shows a LINFrameModel of its own. What comes in is in the model at once and on screen at the latest RefreshMs later:
/// scrolling, scroll bars and painting are done once for all rows that came meanwhile, as their cost grows with the
/// number of rows.
class LINFrameView : public QTableView
{
    Q_OBJECT

public:
    explicit LINFrameView(QWidget *parent = nullptr);
    ~LINFrameView() override;

    static constexpr int RefreshMs = 40;

    const LINFrameModel &frames() const { return m_model; }
    /// Static mode: the frame takes the place of the one with its identifier, or is appended. Otherwise it is appended
    /// and the view scrolls to the bottom. checksumType: what the channel is set to now, 0 standard, 1 enhanced.
    void addRow(const CTableViewLIN::DataObject &frame, bool isStaticMode, quint8 checksumType);
    /// Appends all and scrolls to the bottom.
    void addRows(const QVector<CTableViewLIN::DataObject> &frames, quint8 checksumType);
    void clearRows();

protected slots:
    void dataChanged(const QModelIndex &topLeft, const QModelIndex &bottomRight,
                     const QVector<int> &roles = QVector<int>()) override;

private:
    void countChanged(int before, int now);
    void schedule();
    void refresh();

    LINFrameModel m_model;
    QTimer m_timer; ///< runs since the last refresh
    bool m_isPending = false;
    bool m_isFollowing = false; ///< to the bottom with the next refresh
};
