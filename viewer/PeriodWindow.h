#pragma once

#include "device/CallQueue.h"
#include "viewer/core/PeriodWork.h"
#include "viewer/core/SliceRun.h"

#include <QTimer>
#include <QWidget>

class AnalysisPlot;
class CaptureTab;
class QCheckBox;
class QComboBox;
class QDoubleSpinBox;
class QLabel;
class QwtPlotHistogram;
class QwtPlotMarker;

/// The histogram of an identifier's periods, in a window that goes with its capture. Follows it while it grows.
class PeriodWindow : public QWidget
{
    Q_OBJECT

public:
    /// Belongs to tab.
    explicit PeriodWindow(CaptureTab &tab);
    ~PeriodWindow() override;

    /// In a window of its own, of which each capture may have several.
    static PeriodWindow *open(CaptureTab &tab, FrameKey key, quint16 channel);

    void setIdentifier(FrameKey key, quint16 channel);
    bool saveCsv(const QString &path) const;
    /// The latest; null before the first.
    const std::shared_ptr<const Periods> &periods() const { return m_periods; }

private slots:
    void slot_look();
    void slot_restart();
    void slot_hasResult();
    void slot_draw();
    void slot_clicked(const QPointF &place);

private:
    QWidget *makeChoices();
    QWidget *makeButtons();
    void addMarkers();
    void fillIdentifiers();
    void drawBars();
    void drawMarkers();
    QString figures() const;
    void goTo(qint64 row);

    CaptureTab &m_tab;
    QComboBox *m_identifier = nullptr;
    QComboBox *m_range = nullptr;
    QDoubleSpinBox *m_width = nullptr;
    QCheckBox *m_isLogarithmic = nullptr;
    AnalysisPlot *m_plot = nullptr;
    QwtPlotHistogram *m_bars = nullptr;
    QVector<QwtPlotMarker *> m_markers; ///< least, mean less and plus the deviation, mean, greatest
    QLabel *m_figures = nullptr;
    QTimer m_timer;
    std::size_t m_known = 0; ///< identifiers in the list
    PeriodChoice m_choice;
    std::shared_ptr<const Periods> m_periods;
    qint64 m_shownRow = -1; ///< the one that the last click showed, of bin m_shownBin
    qint64 m_shownBin = -1;
    CallQueue m_calls; ///< from the threads below
    std::shared_ptr<std::atomic<bool>> m_stopFinding;
    // Below what their threads use.
    SliceRun<Periods> m_run;
    WorkerThreads m_findThread;
};
