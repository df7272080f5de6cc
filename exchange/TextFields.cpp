#include "exchange/TextFields.h"

#include <algorithm>
#include <limits>

namespace {

bool isBlank(char c)
{
    return c == ' ' || c == '\t';
}

char lowerCase(char c)
{
    return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
}

} // namespace

std::string_view TextFields::next()
{
    const char *const end = m_rest.data() + m_rest.size();
    const char *const begin = std::find_if_not(m_rest.data(), end, isBlank);
    const char *const fieldEnd = std::find_if(begin, end, isBlank);
    m_rest = {fieldEnd, static_cast<std::size_t>(end - fieldEnd)};
    return {begin, static_cast<std::size_t>(fieldEnd - begin)};
}

std::optional<qint64> scaledDecimal(std::string_view text, int digits)
{
    constexpr qint64 Most = (std::numeric_limits<qint64>::max() - 9) / 10;
    qint64 value = 0;
    int fraction = -1; // digits behind the point, -1 before it
    bool hasDigits = false;
    for (const char c : text) {
        if (c == '.' && fraction < 0) {
            fraction = 0;
            continue;
        }
        const bool isKept = fraction < digits;
        if (c < '0' || c > '9' || (isKept && value > Most)) {
            return std::nullopt;
        }
        hasDigits = true;
        if (isKept) {
            value = value * 10 + (c - '0');
            fraction += fraction >= 0 ? 1 : 0;
        }
    }
    for (fraction = std::max(fraction, 0); fraction < digits; ++fraction) {
        if (value > Most) {
            return std::nullopt;
        }
        value *= 10;
    }
    return hasDigits ? std::optional<qint64>(value) : std::nullopt;
}

bool beginsWith(std::string_view text, std::string_view begin)
{
    return text.size() >= begin.size() && std::equal(begin.begin(), begin.end(), text.begin(),
                                                     [](char a, char b) { return lowerCase(a) == lowerCase(b); });
}

bool isSameWord(std::string_view a, std::string_view b)
{
    return a.size() == b.size() && beginsWith(a, b);
}
