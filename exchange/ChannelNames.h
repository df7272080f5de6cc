#pragma once

#include <QStringList>

#include <string>
#include <string_view>

/// Numbers the channels of captures that name them: by the number at the end of a name ("can1" is channel 1) as long as
/// that is free, otherwise by the lowest free one.
class ChannelNames
{
public:
    static constexpr int MaxChannels = 256;

    /// name: UTF-8. The channel of MaxChannels names at most; all further ones share the last number.
    quint16 number(std::string_view name) { return name == m_lastName ? m_last : find(name); }
    /// By number; empty where there is none.
    const QStringList &names() const { return m_names; }

private:
    quint16 find(std::string_view name);

    QStringList m_names;
    std::string m_lastName;
    quint16 m_last = 0;
};
