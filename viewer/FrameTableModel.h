#pragma once

#include "viewer/core/ColorRules.h"
#include "viewer/core/FrameColumns.h"
#include "viewer/core/OpenCapture.h"

#include <QAbstractTableModel>

/// The rows of a capture that its filter passes, as a table. Nothing is kept for a row or cell: a text is made when it
/// is asked for. Of more rows than a table can have the first are there.
class FrameTableModel : public QAbstractTableModel
{
    Q_OBJECT

public:
    /// capture must outlive this.
    explicit FrameTableModel(OpenCapture &capture, QObject *parent = nullptr);

    int rowCount(const QModelIndex &parent = {}) const override;
    int columnCount(const QModelIndex &parent = {}) const override;
    QVariant data(const QModelIndex &index, int role) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

    OpenCapture &capture() const { return m_capture; }
    /// The cell's text; empty for any other place.
    QString text(int place, FrameColumn column) const;
    /// The same of a row of the store. shownBefore: the row that is shown before it; -1: none.
    QString textOfRow(qint64 row, qint64 shownBefore, FrameColumn column) const;
    /// The whole of a cell, of data in lines, with the bookmark's note; HTML.
    QString toolTip(int place, FrameColumn column) const;
    /// The rule that gives a row its colours; null where there is none.
    const ColorRule *rule(int place) const;
    void setRules(QVector<ColorRule> rules);
    /// The filter for frames with the same cell; empty where there is none.
    QString sameCell(int place, FrameColumn column) const;
    /// The cells that refer to the marked row, or to bookmarks, say something else now.
    void refresh();

private slots:
    void slot_reset();
    void slot_added(qint64 before);
    void slot_sourceChanged();

private:
    OpenCapture &m_capture;
    FrameColumns::Names m_names;
    QVector<ColorRule> m_rules;
    ColorMatcher m_matcher;
    int m_rows = 0;
};
