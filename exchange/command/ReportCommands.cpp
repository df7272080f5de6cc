#include "exchange/BusLoad.h"
#include "exchange/CaptureCheck.h"
#include "exchange/CaptureStatistics.h"
#include "exchange/command/Command.h"
#include "exchange/command/Progress.h"

#include <QCoreApplication>
#include <QDateTime>

#include <array>

namespace {

struct Texts
{
    Q_DECLARE_TR_FUNCTIONS(x9capture)
};

constexpr int BatchSize = 256;
constexpr double NanosecondsPerSecond = 1e9;
constexpr double NanosecondsPerMs = 1e6;

/// Hands each frame of a capture to take(). False, after a message, when reading it failed.
template<typename Take>
bool forEachFrame(CommandContext &context, CaptureSource &source, Take take)
{
    Progress progress;
    std::vector<BusFrame> batch(BatchSize);
    for (int count = 0; (count = source.read(batch.data(), BatchSize)) > 0;) {
        for (int i = 0; i < count; ++i) {
            take(batch[static_cast<std::size_t>(i)]);
        }
        progress.tell(source.offset(), source.size());
    }
    if (source.isBroken()) {
        context.fail(Texts::tr("%1 could not be read to its end.").arg(source.path()));
        return false;
    }
    return true;
}

/// Runs a command for each of its files and returns the worst of what it answers.
template<typename One>
int forEachFile(CommandContext &context, One one)
{
    int worst = Done;
    for (const QString &path : context.files()) {
        const auto source = context.source(path);
        const int code = source != nullptr ? one(*source) : Failed;
        worst = code == Failed || worst == Done ? code : worst;
    }
    return worst;
}

QString timeText(const CaptureInfo &info, qint64 time)
{
    if (time == BusFrame::NoTime) {
        return Texts::tr("none");
    }
    if (info.timeBase == CaptureInfo::Absolute) {
        const QDateTime moment = QDateTime::fromMSecsSinceEpoch(time / 1000000);
        return moment.toString(QStringLiteral("yyyy-MM-dd hh:mm:ss.zzz"));
    }
    return Texts::tr("%1 s").arg(static_cast<double>(time) / NanosecondsPerSecond, 0, 'f', 6);
}

/// "Title:        text"
void line(CommandContext &context, const QString &title, const QString &text)
{
    constexpr int Width = 14;
    context.out() << (title + QLatin1Char(':')).leftJustified(Width) << text << '\n';
}

QString framesText(const CaptureStatistics::Totals &totals)
{
    QStringList parts;
    const auto part = [&parts](qint64 count, const QString &text) {
        if (count > 0) {
            parts.append(text.arg(count));
        }
    };
    part(totals.classic, Texts::tr("%1 classic CAN"));
    part(totals.fd, Texts::tr("%1 CAN FD"));
    part(totals.lin, Texts::tr("%1 LIN"));
    part(totals.error, Texts::tr("%1 error frames"));
    part(totals.remote, Texts::tr("%1 of them remote"));
    part(totals.sent, Texts::tr("%1 sent"));
    part(totals.refused, Texts::tr("%1 refused"));
    return QString::number(totals.frames) +
           (parts.isEmpty() ? QString() : QStringLiteral(" (") + parts.join(QStringLiteral(", ")) + QLatin1Char(')'));
}

void tellChannels(CommandContext &context, const CaptureSource &source, const CaptureStatistics &statistics,
                  double seconds)
{
    for (std::size_t i = 0; i < statistics.channels().size(); ++i) {
        const CaptureStatistics::Channel &channel = statistics.channels()[i];
        if (channel.frames == 0) {
            continue;
        }
        QString text = Texts::tr("%1 frames").arg(channel.frames);
        const QString name = source.info().channelNames.value(static_cast<int>(i));
        text += name.isEmpty() ? QString() : QStringLiteral(", ") + name;
        if (context.isSet("bitrate") && seconds > 0) {
            text +=
                QStringLiteral(", ") + Texts::tr("bus load %1 %").arg(100 * channel.busySeconds / seconds, 0, 'f', 2);
        }
        line(context, Texts::tr("Channel %1").arg(i + 1), text);
    }
}

std::optional<BusLoad::Rates> ratesOf(CommandContext &context)
{
    const BusLoad::Rates usual;
    const auto nominal = context.number("bitrate", static_cast<double>(usual.bitRate), 1);
    const auto data = context.number("data-bitrate", static_cast<double>(usual.dataBitRate), 1);
    const auto lin = context.number("lin-bitrate", static_cast<double>(usual.linBitRate), 1);
    if (!nominal || !data || !lin) {
        return std::nullopt;
    }
    return BusLoad::Rates{static_cast<qint64>(*nominal), static_cast<qint64>(*data), static_cast<qint64>(*lin)};
}

int tellInfo(CommandContext &context, CaptureSource &source, const BusLoad &load)
{
    CaptureStatistics statistics;
    CaptureCheck check(source.findings());
    const bool isRead = forEachFrame(context, source, [&](const BusFrame &frame) {
        statistics.add(frame, load.busy(frame));
        check.add(frame);
    });
    const CaptureStatistics::Totals &totals = statistics.totals();
    const bool hasTime = totals.firstTime != BusFrame::NoTime;
    const double seconds = hasTime ? static_cast<double>(totals.lastTime - totals.firstTime) / NanosecondsPerSecond : 0;
    line(context, Texts::tr("File"), source.path());
    line(context, Texts::tr("Kind"),
         QLatin1String(source.format().name) + QStringLiteral(", ") + QLatin1String(source.format().title));
    line(context, Texts::tr("Frames"), framesText(totals));
    line(context, Texts::tr("First"), timeText(source.info(), totals.firstTime));
    line(context, Texts::tr("Last"), timeText(source.info(), totals.lastTime));
    line(context, Texts::tr("Duration"), Texts::tr("%1 s").arg(seconds, 0, 'f', 6));
    line(context, Texts::tr("Rate"),
         Texts::tr("%1 frames/s").arg(seconds > 0 ? static_cast<double>(totals.frames) / seconds : 0, 0, 'f', 1));
    line(context, Texts::tr("Identifiers"),
         (statistics.notListed() > 0 ? Texts::tr("more than %1") : QStringLiteral("%1")).arg(statistics.rows().size()));
    tellChannels(context, source, statistics, seconds);
    line(context, Texts::tr("Findings"),
         source.findings().count() == 0 ? Texts::tr("none")
                                        : Texts::tr("%1; x9capture verify lists them").arg(source.findings().count()));
    context.out().flush();
    return isRead ? Done : Failed;
}

/// A table's cells, in columns or separated by commas.
class Table
{
public:
    explicit Table(bool isCsv)
        : m_isCsv(isCsv)
    {
    }
    void add(const QStringList &row)
    {
        m_rows.append(row);
        for (int i = 0; i < row.size(); ++i) {
            m_widths.resize(std::max(m_widths.size(), row.size()));
            m_widths[i] = std::max(m_widths.at(i), row.at(i).size());
        }
    }
    void print(QTextStream &out) const
    {
        for (const QStringList &row : m_rows) {
            QStringList cells = row;
            for (int i = 0; i < cells.size() && !m_isCsv; ++i) {
                cells[i] = i + 1 < cells.size() ? cells.at(i).rightJustified(m_widths.at(i)) : cells.at(i);
            }
            out << cells.join(m_isCsv ? QStringLiteral(",") : QStringLiteral("  ")) << '\n';
        }
        out.flush();
    }

private:
    const bool m_isCsv;
    QVector<QStringList> m_rows;
    QVector<int> m_widths;
};

QString kindText(const IdentifierStatistics &row)
{
    if ((row.kind & BusFrame::Lin) != 0) {
        return QStringLiteral("LIN");
    }
    if ((row.kind & BusFrame::Error) != 0) {
        return Texts::tr("error");
    }
    return (row.kind & BusFrame::Extended) != 0 ? Texts::tr("extended") : Texts::tr("standard");
}

/// "0-2 7": the bytes that change.
QString changingText(const IdentifierStatistics &row)
{
    QStringList parts;
    for (std::size_t i = 0; i < row.changing.size(); ++i) {
        if (!row.changing[i]) {
            continue;
        }
        const std::size_t first = i;
        while (i + 1 < row.changing.size() && row.changing[i + 1]) {
            ++i;
        }
        parts.append(first == i ? QString::number(first) : QStringLiteral("%1-%2").arg(first).arg(i));
    }
    return parts.join(QLatin1Char(' '));
}

QStringList cellsOf(const IdentifierStatistics &row)
{
    const auto ms = [&row](double nanoseconds) {
        return row.period.count() > 0 ? QString::number(nanoseconds / NanosecondsPerMs, 'f', 3) : QString();
    };
    const bool isOneLength = row.shortest == row.longest;
    return {QString::number(row.channel + 1),
            QString::number(row.identifier, 16).toUpper(),
            kindText(row),
            QString::number(row.frames),
            ms(row.period.mean()),
            ms(static_cast<double>(row.shortestPeriod)),
            ms(static_cast<double>(row.longestPeriod)),
            ms(row.period.standardDeviation()),
            isOneLength ? QString::number(row.longest) : QStringLiteral("%1-%2").arg(row.shortest).arg(row.longest),
            changingText(row)};
}

} // namespace

int infoCommand(CommandContext &context)
{
    const std::optional<BusLoad::Rates> rates = ratesOf(context);
    if (!rates) {
        return WrongUse;
    }
    const BusLoad load(*rates);
    bool isFirst = true;
    return forEachFile(context, [&](CaptureSource &source) {
        context.out() << (isFirst ? "" : "\n");
        isFirst = false;
        return tellInfo(context, source, load);
    });
}

int verifyCommand(CommandContext &context)
{
    return forEachFile(context, [&context](CaptureSource &source) -> int {
        CaptureCheck check(source.findings());
        const bool isRead = forEachFrame(context, source, [&check](const BusFrame &frame) { check.add(frame); });
        context.tell(source.path(), source.findings(), CommandContext::To::Output);
        const qint64 count = source.findings().count();
        context.say(Texts::tr("%1: %2 frames, %3 findings").arg(source.path()).arg(check.frames()).arg(count));
        if (!isRead) {
            return Failed;
        }
        return count > 0 ? Found : Done;
    });
}

int statsCommand(CommandContext &context)
{
    return forEachFile(context, [&context](CaptureSource &source) -> int {
        CaptureStatistics statistics;
        const bool isRead =
            forEachFrame(context, source, [&statistics](const BusFrame &frame) { statistics.add(frame); });
        Table table(context.isSet("csv"));
        table.add({Texts::tr("Channel"), Texts::tr("ID"), Texts::tr("Type"), Texts::tr("Frames"), Texts::tr("Mean ms"),
                   Texts::tr("Min ms"), Texts::tr("Max ms"), Texts::tr("Deviation ms"), Texts::tr("Length"),
                   Texts::tr("Changing bytes")});
        for (const IdentifierStatistics &row : statistics.rows()) {
            table.add(cellsOf(row));
        }
        table.print(context.out());
        if (statistics.notListed() > 0) {
            context.say(Texts::tr("%1 frames of further identifiers are not listed").arg(statistics.notListed()));
        }
        return isRead ? Done : Failed;
    });
}
