#pragma once

#include <QStringList>

#include <string>
#include <string_view>
#include <vector>

/// Numbers the channels of captures that name them: by the number at the end of a name ("can1" is channel 1) as long as
/// that is free, otherwise by the lowest free one.
class ChannelNames
{
public:
    static constexpr int MaxChannels = 256;

    /// name: UTF-8. The channel of MaxChannels names at most; all further ones share the last number.
    quint16 number(std::string_view name)
    {
        const quint64 key = keyOf(name);
        for (const Known &known : m_known) {
            if (known.key == key) {
                return known.number;
            }
        }
        return find(name, key);
    }
    /// By number; empty where there is none.
    const QStringList &names() const { return m_names; }

private:
    static constexpr quint64 NoKey = 0;
    struct Known
    {
        quint64 key;
        quint16 number;
    };

    /// The characters of a short name, each name's its own; NoKey for a longer one.
    static quint64 keyOf(std::string_view name)
    {
        quint64 key = 1;
        if (name.size() >= sizeof key) {
            return NoKey;
        }
        for (const char c : name) {
            key = key << 8U | static_cast<uchar>(c);
        }
        return key;
    }
    quint16 find(std::string_view name, quint64 key);

    QStringList m_names;
    std::vector<Known> m_known; ///< of short names; MaxChannels at most
    std::string m_lastName;     ///< a long one
    quint16 m_last = 0;
};
