#include "exchange/ChannelNames.h"

#include "exchange/TextNumbers.h"

#include <algorithm>

namespace {

/// The number at the end of a name; -1 when there is none or it is too large.
int numberBehind(std::string_view name)
{
    const std::size_t last = name.find_last_not_of("0123456789");
    const char *at = name.data() + (last == std::string_view::npos ? 0 : last + 1);
    qint64 number = 0;
    const char *end = name.data() + name.size();
    const bool isNumber = TextNumbers::decimal(at, end, number) && at == end;
    return isNumber && number < ChannelNames::MaxChannels ? static_cast<int>(number) : -1;
}

} // namespace

quint16 ChannelNames::find(std::string_view name, quint64 key)
{
    if (key == NoKey && name == m_lastName) {
        return m_last;
    }
    const QString text = QString::fromUtf8(name.data(), static_cast<int>(name.size()));
    int number = m_names.indexOf(text);
    if (number < 0) {
        number = numberBehind(name);
        if (number < 0 || !m_names.value(number).isEmpty()) {
            const int free = m_names.indexOf(QString());
            number = free >= 0 ? free : std::min(m_names.size(), MaxChannels - 1);
        }
        while (m_names.size() <= number) {
            m_names.append(QString());
        }
        m_names[number] = m_names.at(number).isEmpty() ? text : m_names.at(number);
    }
    const auto result = static_cast<quint16>(number);
    if (key == NoKey) {
        m_lastName.assign(name.data(), name.size());
        m_last = result;
    } else if (m_known.size() < MaxChannels) {
        m_known.push_back({key, result});
    }
    return result;
}
