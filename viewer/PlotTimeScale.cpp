#include "viewer/PlotTimeScale.h"

#include <qwt_text.h>

#include <algorithm>

QwtScaleDiv PlotTimeScale::setTicks(const TimeSection &section, int pixels, int characterWidth,
                                    const std::optional<qint64> &clock)
{
    m_section = section;
    m_ticks = timeTicks(section, pixels, characterWidth, clock);
    const auto width = static_cast<double>(section.width());
    m_edge = width / std::max(1, pixels) * characterWidth;
    QwtScaleDiv marks(0, width);
    QList<double> places;
    for (const TimeTick &tick : m_ticks) {
        places.append(static_cast<double>(tick.time - section.begin));
    }
    marks.setTicks(QwtScaleDiv::MajorTick, places);
    return marks;
}

QwtText PlotTimeScale::label(double value) const
{
    const auto found = std::find_if(m_ticks.begin(), m_ticks.end(), [this, value](const TimeTick &tick) {
        return static_cast<double>(tick.time - m_section.begin) >= value;
    });
    if (found == m_ticks.end()) {
        return {};
    }
    const double half = m_edge * (found->text.size() + 1) / 2;
    const bool isInside = value >= half && value <= static_cast<double>(m_section.width()) - half;
    return isInside ? QwtText(found->text, QwtText::PlainText) : QwtText();
}
