#include "adapter/virtual/CyclicSchedule.h"

namespace va {

CyclicSchedule::CyclicSchedule(Period period, std::uint64_t startNs, std::uint64_t phaseNs)
    : m_period(period)
    , m_originNs(startNs + phaseNs)
{
    place(0);
}

void CyclicSchedule::step()
{
    ++m_index;
    m_dueNs += m_period.numeratorNs / m_period.denominator;
    m_remainder += m_period.numeratorNs % m_period.denominator;
    if (m_remainder >= m_period.denominator) {
        m_remainder -= m_period.denominator;
        ++m_dueNs;
    }
}

std::uint64_t CyclicSchedule::skipTo(std::uint64_t timeNs)
{
    if (timeNs < m_dueNs) {
        return 0;
    }
    // Whole numerators hold `denominator` frames each; the rest stays below numerator x denominator, which fits.
    const std::uint64_t elapsed = timeNs - m_originNs;
    const std::uint64_t whole = elapsed / m_period.numeratorNs;
    const std::uint64_t rest = elapsed % m_period.numeratorNs;
    const std::uint64_t inRest = ((rest + 1) * m_period.denominator - 1) / m_period.numeratorNs;
    const std::uint64_t passed = whole * m_period.denominator + inRest;
    const std::uint64_t skipped = passed - m_index;
    place(passed);
    return skipped;
}

void CyclicSchedule::place(std::uint64_t index)
{
    m_index = index;
    const std::uint64_t periods = index + 1;
    const std::uint64_t partial = (periods % m_period.denominator) * m_period.numeratorNs;
    m_dueNs = m_originNs + periods / m_period.denominator * m_period.numeratorNs + partial / m_period.denominator;
    m_remainder = partial % m_period.denominator;
}

} // namespace va
