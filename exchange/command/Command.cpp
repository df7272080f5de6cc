#include "exchange/command/Command.h"

#include "exchange/command/Terminal.h"
#include "exchange/FindingLines.h"

#include <QCoreApplication>
#include <QFile>
#include <QFileInfo>

#include <cstdio>
#include <limits>
#include <utility>

namespace {

struct Texts
{
    Q_DECLARE_TR_FUNCTIONS(x9capture)
};

constexpr int Any = std::numeric_limits<int>::max();

} // namespace

const std::vector<Command> &commands()
{
    static const std::vector<Command> all = {
        {"info", "FILE...", QT_TRANSLATE_NOOP("x9capture", "Tells what is in captures."),
         "x9capture info drive.csv\nx9capture info --bitrate 500000 --data-bitrate 2000000 drive.canfd", 1, Any,
         "from date quiet bitrate data-bitrate lin-bitrate", infoCommand},
        {"convert", "IN OUT", QT_TRANSLATE_NOOP("x9capture", "Writes a capture as one of another kind."),
         "x9capture convert drive.csv drive.canfd\ncandump -L can0 | x9capture convert - drive.csv\n"
         "x9capture convert --follow --idle 10 growing.csv drive.log",
         2, 2, "from date quiet to force strict times words encoding follow idle", convertCommand},
        {"verify", "FILE...", QT_TRANSLATE_NOOP("x9capture", "Tells what is wrong with captures, and where."),
         "x9capture verify drive.csv && echo sound", 1, Any, "from date quiet", verifyCommand},
        {"repair", "IN OUT", QT_TRANSLATE_NOOP("x9capture", "Saves what is left of a damaged capture."),
         "x9capture repair cut.canfd whole.canfd", 2, 2, "from date quiet to force words encoding", repairCommand},
        {"stats", "FILE", QT_TRANSLATE_NOOP("x9capture", "Tells how often and how regularly each identifier comes."),
         "x9capture stats drive.canfd\nx9capture stats --csv drive.canfd > table.csv", 1, 1, "from date quiet csv",
         statsCommand},
        {"merge", "IN... OUT", QT_TRANSLATE_NOOP("x9capture", "Writes several captures as one, by their times."),
         "x9capture merge --separate-channels left.log right.log both.log", 3, Any,
         "from date quiet to force strict times words encoding separate-channels align", mergeCommand},
        {"cut", "IN OUT", QT_TRANSLATE_NOOP("x9capture", "Writes the wanted part of a capture."),
         "x9capture cut --start 10 --end 20.5 drive.csv part.csv\n"
         "x9capture cut --id 100-1FF --id 7DF --channel 1 drive.log part.log\nx9capture cut --count 1000 drive.csv "
         "part.csv",
         2, 2, "from date quiet to force strict times words encoding start end skip count id channel", cutCommand},
        {"decode", "FILE [OUT]",
         QT_TRANSLATE_NOOP("x9capture", "Writes the signals of a capture as a table, by a DBC or LDF file."),
         "x9capture decode --database car.dbc drive.csv signals.csv\n"
         "x9capture decode --database car.dbc --wide --fill --signal 'Engine*.Speed' drive.csv speed.csv",
         1, 2, "from date quiet force database wide fill signal", decodeCommand},
    };
    return all;
}

CommandContext::CommandContext(const QCommandLineParser &options, QStringList known, bool isChinese)
    : m_options(options)
    , m_known(std::move(known))
    , m_files(options.positionalArguments())
    , m_isChinese(isSet("words") ? value("words") == QLatin1String("zh") : isChinese)
    , m_out(stdout)
    , m_errors(stderr)
{
}

std::optional<double> CommandContext::number(const char *option, double fallback, double least)
{
    if (!isSet(option)) {
        return fallback;
    }
    bool isNumber = false;
    const double value = this->value(option).toDouble(&isNumber);
    if (!isNumber || !(value >= least) || value > 1e15) {
        fail(Texts::tr("--%1: %2 is no such number.").arg(QLatin1String(option), this->value(option)));
        return std::nullopt;
    }
    return value;
}

int CommandContext::fail(const QString &text, ExitCode code)
{
    m_out.flush();
    m_errors << QStringLiteral("x9capture: ") << text << '\n';
    m_errors.flush();
    return code;
}

void CommandContext::say(const QString &text)
{
    if (!isSet("quiet")) {
        m_out.flush();
        m_errors << text << '\n';
        m_errors.flush();
    }
}

const ExchangeFormat *CommandContext::format(const char *option, bool &isGood)
{
    isGood = true;
    if (!isSet(option)) {
        return nullptr;
    }
    const ExchangeFormat *found = exchangeFormat(value(option));
    if (found == nullptr) {
        isGood = false;
        fail(Texts::tr("--%1: there is no kind of capture named %2.").arg(QLatin1String(option), value(option)));
    }
    return found;
}

std::unique_ptr<CaptureSource> CommandContext::source(const QString &path)
{
    CaptureSource::Options options;
    bool isGood = false;
    options.format = format("from", isGood);
    const std::optional<double> idle = number("idle", 0, 0);
    if (!isGood || !idle) {
        return nullptr;
    }
    options.idleSeconds = *idle;
    options.isFollowed = isSet("follow");
    if (isSet("date")) {
        const QDate day = QDate::fromString(value("date"), Qt::ISODate);
        if (!day.isValid()) {
            fail(Texts::tr("--date: %1 is no date such as 2026-03-31.").arg(value("date")));
            return nullptr;
        }
        options.date = QDateTime(day, QTime(23, 59, 59, 999));
    }
    if (options.isFollowed) {
        Terminal::catchInterrupt();
    }
    QString error;
    auto source = CaptureSource::open(path, options, error);
    if (source == nullptr) {
        fail(error);
    }
    return source;
}

std::unique_ptr<CaptureSink> CommandContext::sink(const QString &path)
{
    if (path == QLatin1String("-")) {
        Terminal::makeBinary(Terminal::Output);
        auto output = std::make_unique<QFile>();
        output->open(stdout, QIODevice::WriteOnly | QIODevice::Unbuffered);
        return std::make_unique<CaptureSink>(path, std::move(output));
    }
    QString error = Texts::tr("%1 exists already. It is replaced with --force only.").arg(path);
    std::unique_ptr<CaptureSink> sink;
    if (isSet("force") || (!QFileInfo::exists(path) && !QFileInfo(path).isSymLink())) {
        sink = CaptureSink::open(path, isSet("follow") ? CaptureSink::Way::Growing : CaptureSink::Way::Whole, error);
    }
    if (sink == nullptr) {
        fail(error);
    }
    return sink;
}

void CommandContext::tell(const QString &path, const Findings &findings, To to)
{
    QTextStream &stream = to == To::Output ? m_out : m_errors;
    const QStringList lines = findingLines(findings.kept(), findings.count());
    for (const QString &line : lines) {
        stream << path << QStringLiteral(": ") << line << '\n';
    }
    stream.flush();
}
