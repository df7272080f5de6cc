#pragma once

#include "viewer/PlotExport.h"
#include "viewer/PlottedCurves.h"

#include <QWidget>

class PlotArea;
class PlotCurveList;
class PlotTools;
class QLabel;
class QMenu;
class QVBoxLayout;

/// What a capture's signals, bytes and rates look like over time: curves in panes, with a list that tells their values
/// at the cursors. Curves that were asked for are kept with the capture. May be taken out into a window of its own.
class PlotPanel : public QWidget
{
    Q_OBJECT

public:
    /// Kept curves are in folder. capture must outlive this.
    PlotPanel(OpenCapture &capture, QString folder, QWidget *parent = nullptr);
    ~PlotPanel() override;

    PlotArea &area() { return *m_area; }
    const PlottedCurves &curves() const { return m_curves; }

    /// Draws values that were worked out elsewhere, in a pane of their own; a curve of the same title has them instead
    /// of its own. They are not kept with the capture.
    void addSeries(const QString &title, const QString &unit, Series series);
    void removeCurve(int index);
    /// To the pane above (-1) or below (1); below the last one is a new one.
    void moveCurve(int index, int step);
    void setColor(int index, const QColor &color);
    void setShown(int index, bool isShown);

    /// What the file's name ends with says what is written: ".png", ".pdf", anything else CSV. sig_exported tells the
    /// end.
    void exportTo(const QString &path, bool isWhole);
    /// Entries for what can be drawn of a row's frame.
    void addActions(QMenu *menu, qint64 row);
    void setDetached(bool isDetached);
    bool isDetached() const { return m_window != nullptr; }

public slots:
    /// See PlotExpression. A text that is wrong is told and not added; one that is there is chosen in the list.
    void addExpression(const QString &text);
    /// The cursor goes to the time of a row; -1: stays.
    void showRow(qint64 row);

signals:
    /// The user put the cursor on the time of that row.
    void sig_rowWanted(qint64 row);
    /// error: empty when the file was written.
    void sig_exported(const QString &path, const QString &error);

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;
    void changeEvent(QEvent *event) override;

private slots:
    void slot_filled();
    void slot_sourceChanged();
    void slot_cursorWanted(qint64 time);
    void slot_drawn();
    void slot_chooseColor(int index);
    void slot_chooseFile(bool isWhole);
    void slot_exported(const QString &path, const QString &error);
    void slot_changed();

private:
    void connectAll();
    QWidget *makeStatusLine();
    int nextPane() const;
    void arrange();
    void fillList();
    void fillValues();
    void applyColors();
    void updateWhole();
    qint64 rowAt(qint64 time) const;
    qint64 nearestRow(qint64 moment) const;
    void keep();

    OpenCapture &m_capture;
    QString m_folder;
    PlottedCurves m_curves;
    PlotExport m_export; ///< below what it writes
    QTimer m_keepTimer;
    QWidget *m_content; ///< in this or in m_window
    QVBoxLayout *m_layout;
    QLabel *m_placeholder;
    std::unique_ptr<QWidget> m_window;
    PlotTools *m_tools = nullptr;
    PlotArea *m_area = nullptr;
    PlotCurveList *m_list = nullptr;
    QLabel *m_cursorText = nullptr;
    QLabel *m_message = nullptr;
    bool m_isAsking = false; ///< for a row; what the table answers is known
};
