#include "exchange/CaptureTarget.h"
#include "exchange/command/Command.h"
#include "exchange/command/Progress.h"
#include "exchange/FrameMerge.h"
#include "exchange/FrameSelection.h"

#include <QCoreApplication>
#include <QDateTime>

#include <algorithm>
#include <functional>

namespace {

struct Texts
{
    Q_DECLARE_TR_FUNCTIONS(x9capture)
};

constexpr int BatchSize = 256;
constexpr qint64 NanosecondsPerMs = 1000000;
constexpr double NanosecondsPerSecond = 1e9;

using Batch = std::vector<BusFrame>;

/// The kind to write, by the option or by the path's ending; fallback for a path without one. Null after a message.
const ExchangeFormat *targetFormat(CommandContext &context, const QString &path, const ExchangeFormat *fallback)
{
    bool isGood = false;
    const ExchangeFormat *format = context.format("to", isGood);
    if (!isGood) {
        return nullptr;
    }
    format = format != nullptr ? format : exchangeFormatOfPath(path);
    format = format != nullptr ? format : fallback;
    if (format == nullptr || format->writer == nullptr) {
        context.fail(Texts::tr("%1: which kind of capture is to be written? Name it with --to.").arg(path));
        return nullptr;
    }
    return format;
}

/// Writes a capture: opens it at the first frames, when all is known that a writer wants to know.
class Target
{
public:
    Target(CommandContext &context, QString path, const ExchangeFormat &format)
        : m_context(context)
        , m_path(std::move(path))
        , m_format(format)
        , m_encoding(context.value("encoding").toLatin1())
    {
    }

    /// False after a message.
    bool open(const CaptureInfo &info)
    {
        m_sink = m_context.sink(m_path);
        if (m_sink == nullptr) {
            return false;
        }
        const QString times = m_context.value("times");
        const bool usesDevice = times == QLatin1String("device") ||
                                (times == QLatin1String("auto") && (m_format.holds & ExchangeFormat::DeviceTime) == 0);
        const char *encoding = m_encoding.isEmpty() ? nullptr : m_encoding.constData();
        m_target.emplace(m_sink->bytes(), m_format, WriteOptions{info, m_context.isChinese(), encoding}, usesDevice);
        return true;
    }
    void write(BusFrame *frames, int count) { m_target->write(frames, count); }
    bool flush() { return m_sink->flush(); }
    /// The end; says what was written and lost.
    int finish(const QString &from)
    {
        m_target->finish();
        m_context.tell(m_path, m_target->findings(), CommandContext::To::Errors);
        if (m_target->findings().count() > 0 && m_context.isSet("strict")) {
            return m_context.fail(Texts::tr("%1 would not hold everything; it was not written.").arg(m_path), Found);
        }
        QString error;
        if (!m_sink->commit(m_target->fileTime(), error)) {
            return m_context.fail(error);
        }
        m_context.say(Texts::tr("%1: %2 frames from %3").arg(m_path).arg(m_target->frames()).arg(from));
        return Done;
    }

private:
    CommandContext &m_context;
    const QString m_path;
    const ExchangeFormat &m_format;
    const QByteArray m_encoding;
    std::unique_ptr<CaptureSink> m_sink;
    std::optional<CaptureTarget> m_target;
};

/// As FrameReader::read(); also waits for what a followed capture still gets, after idle() was called.
int readOn(CaptureSource &source, Batch &batch, const std::function<void()> &idle)
{
    for (;;) {
        const bool isFollowed = source.isFollowed();
        const int count = source.read(batch.data(), BatchSize);
        if (count > 0 || !isFollowed) {
            return count;
        }
        idle();
        source.waitForMore();
    }
}

/// One capture into another one; those frames that select() wants, until it says that there are enough.
int transfer(CommandContext &context, const ExchangeFormat *fallback, FrameSelector *selector)
{
    const QString from = context.files().at(0);
    const QString to = context.files().at(1);
    const auto source = context.source(from);
    if (source == nullptr) {
        return Failed;
    }
    const ExchangeFormat *format = targetFormat(context, to, fallback != nullptr ? &source->format() : nullptr);
    if (format == nullptr) {
        return WrongUse;
    }
    Target target(context, to, *format);
    Batch batch(BatchSize);
    Progress progress;
    bool isOpen = false;
    for (;;) {
        int count = readOn(*source, batch, [&] { isOpen = isOpen && target.flush(); });
        const bool isEnd = count == 0;
        if (!isOpen && !(isOpen = target.open(source->info()))) {
            return Failed;
        }
        if (selector != nullptr) {
            const auto end = std::remove_if(batch.begin(), batch.begin() + count,
                                            [selector](const BusFrame &frame) { return !selector->takes(frame); });
            count = static_cast<int>(end - batch.begin());
        }
        target.write(batch.data(), count);
        progress.tell(source->offset(), source->size());
        if (isEnd || (selector != nullptr && selector->isOver())) {
            break;
        }
    }
    context.tell(from, source->findings(), CommandContext::To::Errors);
    if (source->isBroken()) {
        return context.fail(Texts::tr("%1 could not be read to its end.").arg(from));
    }
    source->close();
    return target.finish(from);
}

/// Seconds from the first frame on, or a date with a time of day.
bool readMoment(CommandContext &context, const char *option, qint64 &time, bool &isAbsolute)
{
    const QString text = context.value(option);
    bool isNumber = false;
    const double seconds = text.toDouble(&isNumber);
    const QDateTime moment = QDateTime::fromString(text, Qt::ISODateWithMs);
    isAbsolute = !isNumber;
    time =
        isNumber ? static_cast<qint64>(seconds * NanosecondsPerSecond) : moment.toMSecsSinceEpoch() * NanosecondsPerMs;
    if (isNumber ? seconds > -1e9 && seconds < 1e9 : moment.isValid()) {
        return true;
    }
    context.fail(Texts::tr("--%1: %2 is neither a number of seconds nor a time such as 2026-03-31T10:20:30.")
                     .arg(QLatin1String(option), text));
    return false;
}

bool readTimes(CommandContext &context, FrameSelection &selection)
{
    bool isFromAbsolute = false;
    bool isToAbsolute = false;
    if ((context.isSet("start") && !readMoment(context, "start", selection.from, isFromAbsolute)) ||
        (context.isSet("end") && !readMoment(context, "end", selection.to, isToAbsolute))) {
        return false;
    }
    if (context.isSet("start") && context.isSet("end") && isFromAbsolute != isToAbsolute) {
        context.fail(Texts::tr("--start and --end must both be seconds or both be times with a date."));
        return false;
    }
    selection.isSinceFirst = !isFromAbsolute && !isToAbsolute;
    return true;
}

/// "100-1FF" or "7DF", hexadecimal.
bool readRange(CommandContext &context, const QString &text, FrameSelection &selection)
{
    const int dash = text.indexOf(QLatin1Char('-'));
    bool isFirst = false;
    bool isLast = true;
    FrameSelection::Range range{};
    range.first = text.left(dash).toUInt(&isFirst, 16);
    range.last = dash < 0 ? range.first : text.mid(dash + 1).toUInt(&isLast, 16);
    if (isFirst && isLast && range.first <= range.last) {
        selection.identifiers.push_back(range);
        return true;
    }
    context.fail(Texts::tr("--id: %1 is neither an identifier nor a range of them (hexadecimal).").arg(text));
    return false;
}

std::optional<FrameSelection> selectionOf(CommandContext &context)
{
    FrameSelection selection;
    const std::optional<double> skip = context.number("skip", 0, 0);
    const std::optional<double> count = context.number("count", 1e15, 0);
    if (!skip || !count || !readTimes(context, selection)) {
        return std::nullopt;
    }
    selection.skip = static_cast<qint64>(*skip);
    selection.count = static_cast<qint64>(*count);
    for (const QString &text : context.values("id")) {
        if (!readRange(context, text, selection)) {
            return std::nullopt;
        }
    }
    for (const QString &text : context.values("channel")) {
        const int channel = text.toUShort();
        selection.channels.push_back(static_cast<quint16>(channel - 1));
        if (channel == 0) {
            context.fail(Texts::tr("--channel: %1 is no channel.").arg(text));
            return std::nullopt;
        }
    }
    return selection;
}

/// A capture that is merged, with the frames read ahead to learn its times and channels.
struct MergeInput
{
    std::unique_ptr<CaptureSource> source;
    Batch ahead;
    int count = 0;
    int next = 0;

    int read(BusFrame *frames, int room)
    {
        if (next == count) {
            return source->read(frames, room);
        }
        const int now = std::min(room, count - next);
        std::copy_n(ahead.begin() + next, now, frames);
        next += now;
        return now;
    }
};

/// What the merged capture is called by, and what must be added to channels and times. False after a message.
bool joinInfo(CommandContext &context, const std::vector<std::unique_ptr<MergeInput>> &inputs,
              std::vector<FrameMerge::Source> &sources, CaptureInfo &info)
{
    const bool isAligned = context.isSet("align");
    info = inputs.front()->source->info();
    const qint64 start = inputs.front()->count > 0 ? inputs.front()->ahead.front().time : 0;
    int channels = 0;
    QStringList names;
    for (std::size_t i = 0; i < inputs.size(); ++i) {
        MergeInput &input = *inputs[i];
        const CaptureInfo &own = input.source->info();
        if (own.timeBase != info.timeBase && !isAligned) {
            context.fail(Texts::tr("%1 has times of another kind than %2. With --align all begin together.")
                             .arg(input.source->path(), inputs.front()->source->path()));
            return false;
        }
        int used = own.channelNames.size();
        for (int frame = 0; frame < input.count; ++frame) {
            used = std::max(used, input.ahead[static_cast<std::size_t>(frame)].channel + 1);
        }
        sources.push_back({[&input](BusFrame *frames, int room) { return input.read(frames, room); },
                           isAligned && input.count > 0 ? start - input.ahead.front().time : 0,
                           context.isSet("separate-channels") ? channels : 0});
        for (int channel = 0; channel < used; ++channel) {
            const QString name = own.channelNames.value(channel);
            names.append(name.isEmpty() || names.contains(name) ? QStringLiteral("can%1").arg(names.size()) : name);
        }
        channels += std::max(used, 1);
    }
    info.channelNames = context.isSet("separate-channels") ? names : info.channelNames;
    return true;
}

} // namespace

int convertCommand(CommandContext &context)
{
    return transfer(context, nullptr, nullptr);
}

int repairCommand(CommandContext &context)
{
    // Without an ending that says otherwise it stays what it was.
    return transfer(context, &exchangeFormats().front(), nullptr);
}

int cutCommand(CommandContext &context)
{
    const std::optional<FrameSelection> selection = selectionOf(context);
    if (!selection) {
        return WrongUse;
    }
    FrameSelector selector(*selection);
    return transfer(context, &exchangeFormats().front(), &selector);
}

int mergeCommand(CommandContext &context)
{
    std::vector<std::unique_ptr<MergeInput>> inputs;
    for (const QString &path : context.files().mid(0, context.files().size() - 1)) {
        auto input = std::make_unique<MergeInput>();
        input->source = context.source(path);
        if (input->source == nullptr) {
            return Failed;
        }
        input->ahead.resize(BatchSize);
        input->count = input->source->read(input->ahead.data(), BatchSize);
        inputs.push_back(std::move(input));
    }
    const QString to = context.files().last();
    const ExchangeFormat *format = targetFormat(context, to, &inputs.front()->source->format());
    std::vector<FrameMerge::Source> sources;
    CaptureInfo info;
    if (format == nullptr || !joinInfo(context, inputs, sources, info)) {
        return WrongUse;
    }
    Target target(context, to, *format);
    if (!target.open(info)) {
        return Failed;
    }
    FrameMerge merge(std::move(sources));
    Batch batch(BatchSize);
    Progress progress;
    for (int count = 0; (count = merge.read(batch.data(), BatchSize)) > 0;) {
        target.write(batch.data(), count);
        progress.tell(inputs.front()->source->offset(), inputs.front()->source->size());
    }
    for (const auto &input : inputs) {
        context.tell(input->source->path(), input->source->findings(), CommandContext::To::Errors);
        if (input->source->isBroken()) {
            return context.fail(Texts::tr("%1 could not be read to its end.").arg(input->source->path()));
        }
        input->source->close();
    }
    return target.finish(Texts::tr("%1 captures").arg(inputs.size()));
}
