#include "exchange/ExchangeFormat.h"

#include "exchange/AscFormat.h"
#include "exchange/BlfFormat.h"
#include "exchange/CandumpFormat.h"
#include "exchange/CanFdFormat.h"
#include "exchange/CanFormat.h"
#include "exchange/LinCsvFormat.h"
#include "exchange/OwnTextFormat.h"
#include "exchange/PcapFormat.h"
#include "exchange/TrcFormat.h"

#include <QStringList>

#include <algorithm>

namespace {

constexpr qint64 NanosecondsPerUs = 1000;
constexpr qint64 NanosecondsPerMs = 1000 * NanosecondsPerUs;

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
        {"can", "X9CAN classic capture", ".can", CanFormat::Holds, NanosecondsPerMs, CanFormat::recognises,
         CanFormat::reader, CanFormat::writer},
        {"canfd", "X9CAN CAN FD capture", ".canfd", CanFdFormat::Holds, NanosecondsPerMs, CanFdFormat::recognises,
         CanFdFormat::reader, CanFdFormat::writer},
        {"lin-csv", "X9CAN table of LIN frames", ".lin.csv", LinCsvFormat::Holds, NanosecondsPerMs,
         LinCsvFormat::recognises, LinCsvFormat::reader, LinCsvFormat::writer},
        {"csv", "X9CAN table of frames, commas", ".csv", OwnTextFormat::Holds, NanosecondsPerMs,
         OwnTextFormat::recognisesCsv, OwnTextFormat::csvReader, OwnTextFormat::csvWriter},
        {"txt", "X9CAN table of frames, blanks", ".txt", OwnTextFormat::Holds, NanosecondsPerMs,
         OwnTextFormat::recognisesTxt, OwnTextFormat::txtReader, OwnTextFormat::txtWriter},
        {"candump", "candump log", ".log .candump", CandumpFormat::Holds, NanosecondsPerUs, CandumpFormat::recognises,
         CandumpFormat::reader, CandumpFormat::writer},
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
