#pragma once

#include "device/CallQueue.h"
#include "viewer/core/OpenCapture.h"
#include "viewer/core/PlotEntries.h"
#include "viewer/core/TimeViews.h"
#include "viewer/PlotCurveItem.h"

#include <QElapsedTimer>
#include <QObject>

/// A curve with what the user chose for it, its values and its drawing.
struct PlottedCurve
{
    PlottedCurve(PlotEntry wanted, std::shared_ptr<const BusFrameStore> store, std::function<void()> hasMore);

    PlotEntry entry;
    PlotCurve curve;
    PlotCurveItem item;
    int number = 0;       ///< of its automatic color
    bool isGiven = false; ///< its values were worked out elsewhere
};

/// The curves of a capture, which it fills with a share of the GUI thread's time: what threads have found is taken for
/// a moment at a time.
class PlottedCurves : public QObject
{
    Q_OBJECT

public:
    /// capture must outlive this.
    explicit PlottedCurves(OpenCapture &capture, QObject *parent = nullptr);

    int count() const { return static_cast<int>(m_curves.size()); }
    PlottedCurve &at(int index) { return *m_curves[static_cast<std::size_t>(index)]; }
    const PlottedCurve &at(int index) const { return *m_curves[static_cast<std::size_t>(index)]; }
    auto begin() const { return m_curves.begin(); }
    auto end() const { return m_curves.end(); }
    int indexOf(const QString &text) const; ///< -1: there is none
    /// Behind the others; not started.
    PlottedCurve &add(const PlotEntry &entry);
    std::unique_ptr<PlottedCurve> take(int index);
    std::vector<PlotEntry> entries() const;

    /// Begins anew with what the capture knows of signals.
    void start(PlottedCurve &plotted);
    void startAll();
    bool isFilling() const;
    /// While series must stay as they are.
    void hold(bool isHeld);

    /// From the first to the last time of all frames and curves, since the start; nothing without any.
    std::optional<TimeSection> whole() const;

public slots:
    /// The capture may have grown.
    void extend();

signals:
    /// Curves have more values; not after each moment.
    void sig_filled();
    /// A curve's problem has changed.
    void sig_problemChanged();

private slots:
    void slot_found();
    void slot_fill();

private:
    void limitMemory();

    OpenCapture &m_capture;
    CallQueue m_calls; ///< from the threads below
    std::vector<std::unique_ptr<PlottedCurve>> m_curves;
    QTimer m_nextRound;
    QElapsedTimer m_sinceFilled;
    bool m_isHeld = false;
};
