#include "exchange/command/Command.h"
#include "exchange/command/Progress.h"
#include "exchange/database/DatabaseFile.h"
#include "exchange/database/DecodeWriter.h"

#include <QCoreApplication>

namespace {

struct Texts
{
    Q_DECLARE_TR_FUNCTIONS(x9capture)
};

constexpr int BatchSize = 256;

/// The databases that the options name; what is wrong in them goes to standard error. Empty after a message.
std::vector<DecodeSource> databases(CommandContext &context)
{
    std::vector<DecodeSource> sources;
    for (const QString &path : context.values("database")) {
        QString error;
        std::optional<Database> database = readDatabase(path, QString(), error);
        if (!database) {
            context.fail(error);
            return {};
        }
        for (const DatabaseFinding &finding : database->findings) {
            context.say(QStringLiteral("%1:%2:%3: %4")
                            .arg(path)
                            .arg(finding.place.line)
                            .arg(finding.place.column)
                            .arg(finding.text));
        }
        sources.push_back({std::move(*database), {}});
    }
    return sources;
}

void tellCounts(CommandContext &context, const QString &to, const DecodeCounts &counts)
{
    context.say(Texts::tr("%1: %2 values from %3 of %4 frames")
                    .arg(to)
                    .arg(counts.values)
                    .arg(counts.decoded)
                    .arg(counts.frames));
    if (counts.withoutMessage > 0) {
        context.say(Texts::tr("%1 frames are in no database.").arg(counts.withoutMessage));
    }
    if (counts.tooShort > 0) {
        context.say(Texts::tr("%1 frames are too short for all of their signals.").arg(counts.tooShort));
    }
}

} // namespace

int decodeCommand(CommandContext &context)
{
    const QString from = context.files().at(0);
    const QString to = context.files().value(1, QStringLiteral("-"));
    if (!context.isSet("database")) {
        return context.fail(Texts::tr("By which DBC or LDF file? Name it with --database."), WrongUse);
    }
    const std::vector<DecodeSource> sources = databases(context);
    if (sources.empty()) {
        return Failed;
    }
    DecodeOptions options;
    options.layout = context.isSet("wide") ? DecodeOptions::Wide : DecodeOptions::Table;
    options.fillGaps = context.isSet("fill");
    options.signalNames = context.values("signal");
    const QStringList unknown = DecodeWriter::unknownNames(sources, options.signalNames);
    if (!unknown.isEmpty()) {
        return context.fail(Texts::tr("--signal: no database has %1.").arg(unknown.join(QLatin1String(", "))),
                            WrongUse);
    }
    const auto source = context.source(from);
    if (source == nullptr) {
        return Failed;
    }
    const auto sink = context.sink(to);
    if (sink == nullptr) {
        return Failed;
    }
    std::vector<BusFrame> batch(BatchSize);
    Progress progress;
    int count = source->read(batch.data(), BatchSize);
    options.info = source->info(); // complete now
    const auto writer = decodeWriter(sources, sink->bytes(), options);
    for (; count > 0; count = source->read(batch.data(), BatchSize)) {
        writer->write(batch.data(), count);
        progress.tell(source->offset(), source->size());
    }
    writer->finish();
    context.tell(from, source->findings(), CommandContext::To::Errors);
    if (source->isBroken()) {
        return context.fail(Texts::tr("%1 could not be read to its end.").arg(from));
    }
    source->close();
    QString error;
    if (!sink->commit(-1, error)) {
        return context.fail(error);
    }
    tellCounts(context, to, writer->counts());
    return Done;
}
