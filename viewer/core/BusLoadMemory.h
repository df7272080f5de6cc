#pragma once

#include "viewer/core/ChannelLoad.h"

#include <QString>

#include <optional>

/// What the user said of the buses of captures: bit rates, steps and limit, in a file of settings. Damaged or strange
/// values are as good as none.
class BusLoadMemory
{
public:
    static constexpr int MaxCaptures = 500; ///< beyond that others are forgotten

    explicit BusLoadMemory(QString file);

    /// What was kept of the capture at a path; the usual where there is nothing.
    BusLoadSettings load(const QString &capture) const;
    void save(const QString &capture, const BusLoadSettings &settings) const;

private:
    QString m_file;
};

/// "500k", "500 kbit/s", "2M", "19200", "33.3k": bit/s, 1 to BusLoadSettings::MaxBitRate; otherwise nothing.
std::optional<qint64> parseBitRate(const QString &text);
/// "500k", "2M", "19200".
QString bitRateText(qint64 bitRate);
