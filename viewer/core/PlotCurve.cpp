#include "viewer/core/PlotCurve.h"

#include <QLocale>

#include <algorithm>
#include <utility>

namespace {

constexpr int Digits = 10;
constexpr int ProbedStates = 16;

} // namespace

PlotCurve::PlotCurve(std::shared_ptr<const BusFrameStore> store, std::function<void()> hasMore)
    : m_store(store)
    , m_run(std::move(store), std::move(hasMore))
{
    reset();
}

void PlotCurve::reset()
{
    m_run.cancel();
    m_found.clear();
    m_series = std::make_shared<Series>();
    m_shownSeries = m_series;
    m_rate.reset();
    m_expression.reset();
    m_problem.clear();
    m_unit.clear();
    m_isState = false;
}

bool PlotCurve::start(const QString &text, std::shared_ptr<const SignalSource> source)
{
    reset();
    m_source = std::move(source);
    FilterError error{};
    m_expression = PlotExpression::parse(text, m_source, error);
    if (!m_expression) {
        m_problem = error.text;
        return false;
    }
    if (m_expression->isRate()) {
        m_unit = QStringLiteral("1/s");
        const auto one = FrameValue::parse(QStringLiteral("1"), {}, error);
        m_run.start(one.value_or(FrameValue()), m_expression->filter);
    } else {
        m_unit = m_expression->signal >= 0 ? m_source->unit(m_expression->signal) : QString();
        m_run.start(*m_expression->value, m_expression->filter);
    }
    return true;
}

void PlotCurve::setSeries(Series series, const QString &unit)
{
    reset();
    *m_series = std::move(series);
    m_unit = unit;
}

void PlotCurve::extend()
{
    m_run.extend();
}

void PlotCurve::stop(const QString &text)
{
    m_run.cancel();
    m_found.clear();
    m_problem = text;
}

bool PlotCurve::append(const QDeadlineTimer &deadline)
{
    for (std::vector<Series::Point> &points : m_run.take()) {
        m_found.push_back(std::move(points));
    }
    const std::size_t before = m_series->size();
    while (!m_found.empty() && !deadline.hasExpired()) {
        append(m_found.front());
        m_found.pop_front();
    }
    if (m_series->size() > before) {
        checkState();
    }
    return !m_found.empty();
}

void PlotCurve::append(const std::vector<Series::Point> &points)
{
    if (!m_expression || !m_expression->isRate()) {
        m_series->append(points);
        return;
    }
    if (!m_rate) { // not before: the start is known with the first frame
        m_rate = std::make_unique<RateCounter>(*m_series, m_store->start(), m_expression->step);
    }
    for (const Series::Point &point : points) {
        m_rate->add(point.time);
    }
}

/// A signal whose values have two texts or more; one alone is a mark for "not available".
void PlotCurve::checkState()
{
    if (m_isState || !m_expression || m_expression->signal < 0) {
        return;
    }
    std::vector<double> probes{m_series->least(), m_series->greatest()};
    for (int state = 0; state < ProbedStates; ++state) {
        probes.push_back(state);
    }
    std::sort(probes.begin(), probes.end());
    probes.erase(std::unique(probes.begin(), probes.end()), probes.end());
    m_isState = std::count_if(probes.begin(), probes.end(), [this](double value) {
                    return !m_source->valueText(m_expression->signal, value).isEmpty();
                }) > 1;
}

QString PlotCurve::valueText(double value) const
{
    if (m_expression && m_expression->signal >= 0) {
        QString text = m_source->valueText(m_expression->signal, value);
        if (!text.isEmpty()) {
            return text;
        }
    }
    const QString number = QLocale::c().toString(value, 'g', Digits);
    return m_unit.isEmpty() ? number : number + QLatin1Char(' ') + m_unit;
}

std::optional<double> PlotCurve::valueAt(qint64 time) const
{
    const std::size_t index = m_series->indexAt(time);
    return index < m_series->size() ? std::make_optional(m_series->at(index).value) : std::nullopt;
}
