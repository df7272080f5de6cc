#pragma once

#include "viewer/core/PlotExpression.h"
#include "viewer/core/SeriesRun.h"

#include <QDeadlineTimer>

#include <deque>

/// What a plot draws of a capture: it fills itself with the values of the frames on all cores and goes on when the
/// capture has grown. All functions are for the thread that made it, and none waits.
class PlotCurve
{
public:
    /// hasMore: called from any thread when append() has something to do.
    PlotCurve(std::shared_ptr<const BusFrameStore> store, std::function<void()> hasMore);

    /// Begins anew. False when the text is wrong, which problem() then tells; there are no values until it is started
    /// with a text, or with a source, that is right.
    bool start(const QString &text, std::shared_ptr<const SignalSource> source);
    /// Shows values that were worked out elsewhere.
    void setSeries(Series series, const QString &unit);
    /// Looks for values in rows that were added.
    void extend();
    /// Takes values that were found into the series until a deadline. False when there are no more for now.
    bool append(const QDeadlineTimer &deadline);
    /// Ends the search for good; text tells the user why.
    void stop(const QString &text);

    /// Changes in append() only. Another one after start() and setSeries(); the one before stays as it is for those
    /// who have it.
    const std::shared_ptr<const Series> &series() const { return m_shownSeries; }
    const QString &problem() const { return m_problem; }
    const QString &unit() const { return m_unit; }
    /// Whether values are still to come from the rows that there were at the last start() or extend().
    bool isFilling() const { return m_run.isRunning() || !m_found.empty(); }
    /// Whether the values stand for states that have texts.
    bool isState() const { return m_isState; }
    /// The last value not behind time, which is nanoseconds in the frames' time base.
    std::optional<double> valueAt(qint64 time) const;
    /// "12.5 1/s", "On".
    QString valueText(double value) const;

private:
    void append(const std::vector<Series::Point> &points);
    void reset();
    void checkState();

    std::shared_ptr<const BusFrameStore> m_store;
    std::shared_ptr<const SignalSource> m_source;
    SeriesRun m_run;
    std::deque<std::vector<Series::Point>> m_found;
    std::shared_ptr<Series> m_series;
    std::shared_ptr<const Series> m_shownSeries;
    std::optional<PlotExpression> m_expression;
    std::unique_ptr<RateCounter> m_rate; ///< of a curve that is one, from its first frame on
    QString m_problem;
    QString m_unit;
    bool m_isState = false;
};
