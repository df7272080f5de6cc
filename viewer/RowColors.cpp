#include "viewer/RowColors.h"

#include <algorithm>
#include <cmath>

namespace {

constexpr double LeastContrast = 4.5;
constexpr double DarkestGround = 0.1;  ///< the lightness that white turns into
constexpr double DarkSaturation = 0.7; ///< what is left of it: colours glow on dark ground

double luminance(const QColor &color)
{
    const auto linear = [](double part) {
        return part <= 0.03928 ? part / 12.92 : std::pow((part + 0.055) / 1.055, 2.4);
    };
    return 0.2126 * linear(color.redF()) + 0.7152 * linear(color.greenF()) + 0.0722 * linear(color.blueF());
}

QColor withLightness(const QColor &color, double lightness)
{
    return QColor::fromHslF(std::max(0.0, color.hslHueF()), color.hslSaturationF(),
                            std::max(0.0, std::min(lightness, 1.0)));
}

QColor readable(const QColor &text, const QColor &ground)
{
    constexpr double Step = 0.02;
    const double direction = luminance(ground) < 0.18 ? Step : -Step;
    QColor color = text;
    for (double lightness = text.lightnessF();
         contrast(color, ground) < LeastContrast && lightness >= 0 && lightness <= 1; lightness += direction) {
        color = withLightness(text, lightness + direction);
    }
    return color;
}

} // namespace

bool isDark(const QPalette &palette)
{
    return luminance(palette.color(QPalette::Base)) < luminance(palette.color(QPalette::Text));
}

QColor colorIn(const QPalette &palette, quint32 rgb)
{
    const QColor color(rgb);
    return !isDark(palette) ? color
                            : QColor::fromHslF(std::max(0.0, color.hslHueF()), color.hslSaturationF() * DarkSaturation,
                                               1 - (1 - DarkestGround) * color.lightnessF());
}

double contrast(const QColor &first, const QColor &second)
{
    const double one = luminance(first) + 0.05;
    const double other = luminance(second) + 0.05;
    return std::max(one, other) / std::min(one, other);
}

RowColors rowColors(const ColorRule &rule, const QPalette &palette)
{
    RowColors colors;
    if (rule.background) {
        colors.background = colorIn(palette, *rule.background);
    }
    colors.text = readable(rule.text ? colorIn(palette, *rule.text) : palette.color(QPalette::Text),
                           rule.background ? colors.background : palette.color(QPalette::Base));
    return colors;
}
