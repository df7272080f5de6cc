#include "viewer/core/BusLoadMemory.h"

#include <QCryptographicHash>
#include <QFileInfo>
#include <QRegularExpression>
#include <QSettings>

#include <cmath>
#include <utility>

namespace {

constexpr int MaxChannels = 256;
constexpr qint64 MaxWidth = 3600000000000; ///< ns
constexpr double MaxLimit = 1000;          ///< percent
constexpr qint64 Kilo = 1000;
constexpr qint64 Mega = 1000000;

QString groupOf(const QString &capture)
{
    const QFileInfo file(capture);
    const QString canonical = file.canonicalFilePath();
    const QString path = canonical.isEmpty() ? file.absoluteFilePath() : canonical;
    return QString::fromLatin1(QCryptographicHash::hash(path.toUtf8(), QCryptographicHash::Sha1).toHex());
}

/// A number within [least, greatest], otherwise the usual one.
template<typename Number>
Number number(const QVariant &value, Number least, Number greatest, Number usual)
{
    bool isNumber = false;
    const double read = value.toDouble(&isNumber);
    return isNumber && read >= static_cast<double>(least) && read <= static_cast<double>(greatest)
               ? static_cast<Number>(read)
               : usual;
}

} // namespace

BusLoadMemory::BusLoadMemory(QString file)
    : m_file(std::move(file))
{
}

BusLoadSettings BusLoadMemory::load(const QString &capture) const
{
    BusLoadSettings settings;
    QSettings file(m_file, QSettings::IniFormat);
    file.beginGroup(groupOf(capture));
    settings.width = number(file.value(QStringLiteral("width")), BusLoadSettings::LeastWidth, MaxWidth, settings.width);
    settings.limit = number(file.value(QStringLiteral("limit")), 0.0, MaxLimit, settings.limit);
    const int size = std::min(file.beginReadArray(QStringLiteral("channels")), MaxChannels);
    const auto rate = [&file](const char *key, qint64 usual) {
        return number(file.value(QLatin1String(key)), qint64{1}, BusLoadSettings::MaxBitRate, usual);
    };
    for (int i = 0; i < size; ++i) {
        file.setArrayIndex(i);
        const int channel = number(file.value(QStringLiteral("channel")), 0, 0xFFFF, -1);
        if (channel >= 0) {
            settings.rates[static_cast<quint16>(channel)] = {rate("nominal", settings.usual.bitRate),
                                                             rate("data", settings.usual.dataBitRate),
                                                             rate("lin", settings.usual.linBitRate)};
        }
    }
    return settings;
}

void BusLoadMemory::save(const QString &capture, const BusLoadSettings &settings) const
{
    QSettings file(m_file, QSettings::IniFormat);
    const QString group = groupOf(capture);
    const QStringList groups = file.childGroups();
    if (groups.size() >= MaxCaptures && !groups.contains(group)) {
        file.remove(groups.first());
    }
    file.remove(group);
    file.beginGroup(group);
    file.setValue(QStringLiteral("width"), settings.width);
    file.setValue(QStringLiteral("limit"), settings.limit);
    file.beginWriteArray(QStringLiteral("channels"));
    int index = 0;
    for (const auto &[channel, rates] : settings.rates) {
        if (index == MaxChannels) {
            break;
        }
        file.setArrayIndex(index++);
        file.setValue(QStringLiteral("channel"), channel);
        file.setValue(QStringLiteral("nominal"), rates.bitRate);
        file.setValue(QStringLiteral("data"), rates.dataBitRate);
        file.setValue(QStringLiteral("lin"), rates.linBitRate);
    }
    file.endArray();
}

std::optional<qint64> parseBitRate(const QString &text)
{
    static const QRegularExpression pattern(
        QStringLiteral("^\\s*(\\d+(?:[.,]\\d+)?)\\s*([kKmM]?)\\s*(?:bit/s|bps|bit)?\\s*$"));
    const QRegularExpressionMatch match = pattern.match(text.left(50));
    if (!match.hasMatch()) {
        return std::nullopt;
    }
    const QString unit = match.captured(2).toLower();
    const qint64 factor = unit == QLatin1String("k") ? Kilo : unit == QLatin1String("m") ? Mega : 1;
    const double value =
        match.captured(1).replace(QLatin1Char(','), QLatin1Char('.')).toDouble() * static_cast<double>(factor);
    if (value < 1 || value > static_cast<double>(BusLoadSettings::MaxBitRate)) {
        return std::nullopt;
    }
    return qRound64(value);
}

QString bitRateText(qint64 bitRate)
{
    if (bitRate % Mega == 0) {
        return QStringLiteral("%1M").arg(bitRate / Mega);
    }
    constexpr qint64 LeastKilo = 20 * Kilo; // LIN's rates are told in bit/s
    return bitRate % (Kilo / 10) == 0 && bitRate >= LeastKilo
               ? QString::number(static_cast<double>(bitRate) / Kilo, 'g', 10) + QLatin1Char('k')
               : QString::number(bitRate);
}
