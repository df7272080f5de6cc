#include "viewer/PlotColors.h"

#include <array>

namespace {

constexpr std::array<QRgb, 8> OnLight{0xFF1F5FBF, 0xFFC8321E, 0xFF1B7F37, 0xFF8A34B4,
                                      0xFFA35F00, 0xFF0B7F86, 0xFFC2267D, 0xFF5B6B00};
constexpr std::array<QRgb, 8> OnDark{0xFF6AA9FF, 0xFFFF7D66, 0xFF5FD07A, 0xFFD58BF0,
                                     0xFFF0B040, 0xFF4FD6D9, 0xFFFF7FBE, 0xFFC0CF4A};

} // namespace

QColor plotColor(int number, const QColor &background)
{
    constexpr int Middle = 128;
    const auto place = static_cast<std::size_t>(number) % OnLight.size();
    return QColor::fromRgb(background.lightness() < Middle ? OnDark[place] : OnLight[place]);
}
