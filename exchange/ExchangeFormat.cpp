#include "exchange/ExchangeFormat.h"

#include "exchange/AscFormat.h"
#include "exchange/BlfFormat.h"
#include "exchange/PcapFormat.h"
#include "exchange/TrcFormat.h"

#include <QStringList>

#include <algorithm>

namespace {

template<typename Predicate>
const ExchangeFormat *firstFormat(Predicate predicate)
{
    const auto &formats = exchangeFormats();
    const auto found = std::find_if(formats.begin(), formats.end(), predicate);
    return found != formats.end() ? &*found : nullptr;
}

} // namespace

const std::vector<ExchangeFormat> &exchangeFormats()
{
    static const std::vector<ExchangeFormat> formats = {
        {"asc", "ASC", ".asc", AscFormat::Holds, 1, AscFormat::recognises, AscFormat::reader, AscFormat::writer},
        {"blf", "BLF", ".blf", BlfFormat::Holds, 1, BlfFormat::recognises, BlfFormat::reader, BlfFormat::writer},
        {"pcapng", "pcapng, SocketCAN", ".pcapng .ntar", PcapngFormat::Holds, 1, PcapngFormat::recognises,
         PcapngFormat::reader, PcapngFormat::writer},
        {"pcap", "pcap, SocketCAN", ".pcap .cap", PcapFormat::Holds, 1, PcapFormat::recognises, PcapFormat::reader,
         PcapFormat::writer},
        {"trc", "TRC 2.1", ".trc", TrcFormat::Holds, 1000, TrcFormat::recognises, TrcFormat::reader, TrcFormat::writer},
    };
    return formats;
}

const ExchangeFormat *exchangeFormat(const QString &name)
{
    return firstFormat([&name](const ExchangeFormat &format) { return name == QLatin1String(format.name); });
}

const ExchangeFormat *exchangeFormatOfPath(const QString &path)
{
    return firstFormat([&path](const ExchangeFormat &format) {
        const QStringList endings = QString::fromLatin1(format.endings).split(QLatin1Char(' '));
        return std::any_of(endings.begin(), endings.end(),
                           [&path](const QString &ending) { return path.endsWith(ending, Qt::CaseInsensitive); });
    });
}

const ExchangeFormat *recognisedFormat(std::string_view head)
{
    return firstFormat([head](const ExchangeFormat &format) { return format.recognises(head); });
}
