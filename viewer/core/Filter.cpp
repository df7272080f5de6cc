#include "viewer/core/Filter.h"

#include "viewer/core/FilterParser.h"

#include <QSet>

#include <algorithm>
#include <utility>

namespace {

bool isTooLong(const QString &text, FilterError &error)
{
    if (text.size() <= Filter::MaxLength) {
        return false;
    }
    error = {Filter::MaxLength, static_cast<int>(text.size()) - Filter::MaxLength,
             QCoreApplication::translate("Filter", "The expression is too long.")};
    return true;
}

/// Calls function(batch) for parts of count rows from first on until it returns false.
template<typename Function>
void forEachBatch(const BusFrameStore &store, qint64 first, int count, bool isBackward, Function function)
{
    const BusFrameStore::Block &block = store.block(BusFrameStore::blockOf(first));
    for (int done = 0; done < count;) {
        const int size = std::min(FilterBatch::Size, count - done);
        const int offset = isBackward ? count - done - size : done;
        if (!function(
                FilterBatch{block, BusFrameStore::indexInBlock(first) + offset, size, first + offset, store.start()})) {
            return;
        }
        done += size;
    }
}

/// What two filters have made already.
class BothNode : public TestNode
{
public:
    BothNode(std::shared_ptr<const TestNode> first, std::shared_ptr<const TestNode> second)
        : m_first(std::move(first))
        , m_second(std::move(second))
    {
    }
    void test(const FilterBatch &batch, FilterBatch::Mask &mask) const override
    {
        m_first->test(batch, mask);
        m_second->test(batch, mask);
    }

private:
    std::shared_ptr<const TestNode> m_first;
    std::shared_ptr<const TestNode> m_second;
};

FilterBatch::Mask maskOf(const TestNode *test, const FilterBatch &batch)
{
    FilterBatch::Mask mask;
    mask.fill(true);
    if (test != nullptr) {
        test->test(batch, mask);
    }
    return mask;
}

/// Where a text in quotation marks begins that does not end.
int openQuote(const QString &text)
{
    int begin = text.size();
    for (int i = 0; i < text.size(); ++i) {
        const QChar character = text.at(i);
        if (begin == text.size() && (character == QLatin1Char('"') || character == QLatin1Char('\''))) {
            begin = i;
        } else if (begin < text.size() && character == text.at(begin)) {
            begin = text.size();
        }
    }
    return begin;
}

} // namespace

std::optional<Filter> Filter::parse(const QString &text, const std::shared_ptr<const SignalSource> &source,
                                    FilterError &error)
{
    Filter filter;
    if (isTooLong(text, error)) {
        return std::nullopt;
    }
    if (!text.trimmed().isEmpty()) {
        try {
            filter.m_test = FilterParser(text, source).test();
        } catch (const FilterError &found) {
            error = found;
            return std::nullopt;
        }
    }
    return filter;
}

Filter Filter::both(const Filter &first, const Filter &second)
{
    if (first.passesAll() || second.passesAll()) {
        return first.passesAll() ? second : first;
    }
    Filter filter;
    filter.m_test = std::make_shared<BothNode>(first.m_test, second.m_test);
    return filter;
}

FilterCompletion Filter::complete(const QString &text, int cursor, const SignalSource *source)
{
    FilterCompletion completion;
    completion.position = std::min<int>(cursor, text.size());
    const auto isInWord = [&text](int position) {
        const QChar character = text.at(position);
        return character.isLetterOrNumber() || character == QLatin1Char('_') || character == QLatin1Char('.');
    };
    while (completion.position > 0 && isInWord(completion.position - 1)) {
        --completion.position;
    }
    completion.position = std::min(completion.position, openQuote(text.left(cursor)));
    completion.length = std::min<int>(cursor, text.size()) - completion.position;
    const QString begun = text.mid(completion.position, completion.length);
    if (text.size() > MaxLength || (!begun.isEmpty() && begun.at(0).isDigit())) {
        return completion;
    }
    const QString before = text.left(completion.position);
    FilterParser parser(before, source);
    try {
        parser.test();
    } catch (const FilterError & /*unfinished*/) {
        // That is why it is completed.
    }
    QSet<QString> offered;
    for (const QString &offer : parser.offers()) {
        if (completion.candidates.size() == FilterCompletion::MaxCandidates) {
            break;
        }
        if (offer.startsWith(begun, Qt::CaseInsensitive) && !offered.contains(offer)) {
            offered.insert(offer);
            completion.candidates.append(offer);
        }
    }
    return completion;
}

bool Filter::passes(const BusFrameStore &store, qint64 row) const
{
    return firstPassing(store, row, 1, false).has_value();
}

void Filter::passing(const BusFrameStore &store, qint64 first, int count, std::vector<quint16> &indices) const
{
    forEachBatch(store, first, count, false, [this, &indices](const FilterBatch &batch) {
        const FilterBatch::Mask mask = maskOf(m_test.get(), batch);
        for (int i = 0; i < batch.count; ++i) {
            if (mask[static_cast<std::size_t>(i)]) {
                indices.push_back(static_cast<quint16>(batch.first + i));
            }
        }
        return true;
    });
}

std::optional<qint64> Filter::firstPassing(const BusFrameStore &store, qint64 first, int count, bool isBackward) const
{
    std::optional<qint64> row;
    forEachBatch(store, first, count, isBackward, [&](const FilterBatch &batch) {
        const FilterBatch::Mask mask = maskOf(m_test.get(), batch);
        for (int i = 0; i < batch.count && !row; ++i) {
            const int index = isBackward ? batch.count - 1 - i : i;
            if (mask[static_cast<std::size_t>(index)]) {
                row = batch.firstRow + index;
            }
        }
        return !row;
    });
    return row;
}

std::optional<FrameValue> FrameValue::parse(const QString &text, const std::shared_ptr<const SignalSource> &source,
                                            FilterError &error)
{
    if (isTooLong(text, error)) {
        return std::nullopt;
    }
    try {
        FrameValue value;
        value.m_value = FilterParser(text, source).value();
        return value;
    } catch (const FilterError &found) {
        error = found;
        return std::nullopt;
    }
}

void FrameValue::samples(const BusFrameStore &store, const Filter &filter, qint64 first, int count,
                         std::vector<Sample> &samples) const
{
    forEachBatch(store, first, count, false, [this, &filter, &samples](const FilterBatch &batch) {
        const FilterBatch::Mask mask = maskOf(filter.m_test.get(), batch);
        FilterBatch::Values values;
        m_value->work(batch, mask, values);
        for (int i = 0; i < batch.count; ++i) {
            const auto at = static_cast<std::size_t>(i);
            if (mask[at] && values[at] == values[at]) { // not a number differs from itself
                samples.push_back({static_cast<quint16>(batch.first + i), values[at]});
            }
        }
        return true;
    });
}
