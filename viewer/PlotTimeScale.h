#pragma once

#include "viewer/core/TimeTicks.h"

#include <qwt_scale_div.h>
#include <qwt_scale_draw.h>

/// The times below a picture; the scale counts nanoseconds from the section's begin.
class PlotTimeScale : public QwtScaleDraw
{
public:
    /// The scale's marks. Texts that would reach beyond the picture are left out; characterWidth and pixels as with
    /// timeTicks().
    QwtScaleDiv setTicks(const TimeSection &section, int pixels, int characterWidth,
                         const std::optional<qint64> &clock);

    QwtText label(double value) const override;

private:
    std::vector<TimeTick> m_ticks;
    TimeSection m_section;
    double m_edge = 0; ///< width of a character, in nanoseconds
};
