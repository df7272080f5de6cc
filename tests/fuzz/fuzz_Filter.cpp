// Fuzz target: any text, typed as a filter, must give a filter or a place in the text where it is wrong; what may be
// typed at any place of it must be told; and a filter must say the same of a frame whether it is asked alone, in a
// batch or backward.

#include "tests/viewer/TestSignals.h"
#include "tests/viewer/ViewerFrames.h"
#include "viewer/core/Filter.h"

#include <cstdlib>

namespace {

constexpr int Rows = 600; // more than two batches

void require(bool condition)
{
    if (!condition) {
        std::abort();
    }
}

const BusFrameStore &frames()
{
    static BusFrameStore store;
    if (store.size() == 0) {
        fillNumbered(store, Rows - 2);
        fill(store, {canFrame(BusFrame::NoTime, 0x100, "F0000701"), canFrame(1, 4, "00", BusFrame::Error)});
    }
    return store;
}

void checkCompletion(const QString &text, int cursor, const SignalSource *source)
{
    const FilterCompletion completion = Filter::complete(text, cursor, source);
    require(completion.position >= 0 && completion.length >= 0);
    require(completion.position + completion.length == cursor);
    for (const QString &candidate : completion.candidates) {
        require(candidate.startsWith(text.mid(completion.position, completion.length), Qt::CaseInsensitive));
    }
}

void checkRows(const Filter &filter)
{
    const BusFrameStore &store = frames();
    std::vector<quint16> indices;
    filter.passing(store, 0, Rows, indices);
    const std::optional<qint64> last = filter.firstPassing(store, 0, Rows, true);
    require(last == (indices.empty() ? std::nullopt : std::optional<qint64>(indices.back())));
    std::size_t next = 0;
    for (qint64 row = 0; row < Rows; row += 7) {
        while (next < indices.size() && indices[next] < row) {
            ++next;
        }
        require(filter.passes(store, row) == (next < indices.size() && indices[next] == row));
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    const QString text = QString::fromUtf8(reinterpret_cast<const char *>(data), static_cast<int>(size));
    static const auto source = std::make_shared<TestSignals>();
    for (const auto &names : {std::shared_ptr<const SignalSource>(source), std::shared_ptr<const SignalSource>()}) {
        FilterError error{-1, -1, QString()};
        const std::optional<Filter> filter = Filter::parse(text, names, error);
        if (filter) {
            checkRows(*filter);
        } else {
            require(error.position >= 0 && error.length >= 0 && !error.text.isEmpty());
            require(error.position + error.length <= text.size());
        }
        checkCompletion(text, static_cast<int>(size % (static_cast<size_t>(text.size()) + 1)), names.get());
    }
    FilterError error{-1, -1, QString()};
    if (const auto value = FrameValue::parse(text, source, error)) {
        std::vector<FrameValue::Sample> samples;
        value->samples(frames(), {}, 0, Rows, samples);
        require(samples.size() <= Rows);
    } else {
        require(error.position >= 0 && error.position + error.length <= text.size());
    }
    return 0;
}
