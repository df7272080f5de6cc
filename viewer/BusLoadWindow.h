#pragma once

#include "device/CallQueue.h"
#include "viewer/core/BusLoadMemory.h"
#include "viewer/core/SliceRun.h"

#include <QSet>
#include <QTimer>
#include <QWidget>

class AnalysisPlot;
class CaptureTab;
class QComboBox;
class QDoubleSpinBox;
class QLabel;
class QTableWidget;
class QTableWidgetItem;
class QwtPlotCurve;
class QwtPlotMarker;

/// The load of a capture's buses over time, in a window that goes with its capture. Follows it while it grows.
class BusLoadWindow : public QWidget
{
    Q_OBJECT

public:
    enum Column { Channel, Nominal, Data, Lin, Frames, Least, Mean, Greatest, Above };
    static constexpr int ColumnCount = Above + 1;

    /// Belongs to tab. memory: what is known of captures' buses, and where it is kept.
    BusLoadWindow(CaptureTab &tab, const BusLoadMemory &memory);
    ~BusLoadWindow() override;

    /// Shows the window of the capture, of which there is one.
    static BusLoadWindow *open(CaptureTab &tab, const BusLoadMemory &memory);

    bool saveCsv(const QString &path) const;
    const std::shared_ptr<const BusLoads> &loads() const { return m_loads; }

private slots:
    void slot_look();
    void slot_hasResult();
    void slot_draw();
    void slot_settingsChanged();
    void slot_itemChanged(QTableWidgetItem *item);
    void slot_clicked(const QPointF &place);

private:
    /// The line of a channel, and its points above the limit.
    struct Curves
    {
        QwtPlotCurve *line;
        QwtPlotCurve *above;
    };

    QWidget *makeChoices();
    QWidget *makeButtons();
    void makeTable();
    void restart();
    void fillTable();
    void setCell(int row, Column column, const QString &text, bool isEditable);
    void drawCurve(std::size_t number);
    void showNextAbove();
    bool isShown(quint16 channel) const { return !m_hidden.contains(channel); }
    double secondsOf(qint64 time) const;

    CaptureTab &m_tab;
    BusLoadMemory m_memory;
    BusLoadSettings m_settings;
    QComboBox *m_width = nullptr;
    QDoubleSpinBox *m_limit = nullptr;
    QLabel *m_state = nullptr;
    QTableWidget *m_table = nullptr;
    AnalysisPlot *m_plot = nullptr;
    QwtPlotMarker *m_limitLine = nullptr;
    QwtPlotMarker *m_place = nullptr; ///< the frame that is selected
    std::vector<Curves> m_curves;
    QSet<quint16> m_hidden;
    QTimer m_timer;
    std::shared_ptr<const BusLoads> m_loads;
    qint64 m_lastAbove; ///< the time that was shown last
    bool m_isFilling = false;
    CallQueue m_calls;        ///< from the threads below
    SliceRun<BusLoads> m_run; ///< the last member: its thread ends before the others go
};
