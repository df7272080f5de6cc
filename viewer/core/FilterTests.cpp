#include "viewer/core/FilterNodes.h"
#include "viewer/core/FilterSteps.h"

namespace {

using FilterSteps::forEach;
using Mask = FilterBatch::Mask;
using Values = FilterBatch::Values;

bool isEmpty(const FilterBatch &batch, const Mask &mask)
{
    return std::none_of(mask.begin(), mask.begin() + batch.count, [](bool isSet) { return isSet; });
}

/// Comparisons with what is not a number are false, also that it is not equal.
class ComparisonNode : public TestNode
{
public:
    ComparisonNode(ComparisonOperator op, ValuePointer left, ValuePointer right)
        : m_operator(op)
        , m_left(std::move(left))
        , m_right(std::move(right))
    {
    }
    void test(const FilterBatch &batch, Mask &mask) const override
    {
        Values left;
        Values right;
        m_left->work(batch, mask, left);
        m_right->work(batch, mask, right);
        const auto compare = [&](auto isTrue) {
            forEach(batch,
                    [&](std::size_t i, std::size_t /*at*/) { mask[i] = mask[i] & int{isTrue(left[i], right[i])}; });
        };
        switch (m_operator) {
        case ComparisonOperator::Equal:
            compare([](double a, double b) { return a == b; });
            break;
        case ComparisonOperator::NotEqual:
            compare([](double a, double b) { return a < b || a > b; });
            break;
        case ComparisonOperator::Less:
            compare([](double a, double b) { return a < b; });
            break;
        case ComparisonOperator::LessEqual:
            compare([](double a, double b) { return a <= b; });
            break;
        case ComparisonOperator::Greater:
            compare([](double a, double b) { return a > b; });
            break;
        case ComparisonOperator::GreaterEqual:
            compare([](double a, double b) { return a >= b; });
            break;
        }
    }

private:
    ComparisonOperator m_operator;
    ValuePointer m_left;
    ValuePointer m_right;
};

/// A test of each frame's value by itself.
template<typename Predicate>
class ValueTest : public TestNode
{
public:
    ValueTest(ValuePointer value, Predicate predicate)
        : m_value(std::move(value))
        , m_predicate(std::move(predicate))
    {
    }
    void test(const FilterBatch &batch, Mask &mask) const override
    {
        Values values;
        m_value->work(batch, mask, values);
        forEach(batch, mask, [&](std::size_t i, std::size_t /*at*/) { mask[i] = m_predicate(values[i]); });
    }

private:
    ValuePointer m_value;
    Predicate m_predicate;
};

/// A test of each frame by itself.
template<typename Predicate>
class FrameTest : public TestNode
{
public:
    explicit FrameTest(Predicate predicate)
        : m_predicate(std::move(predicate))
    {
    }
    void test(const FilterBatch &batch, Mask &mask) const override
    {
        forEach(batch, mask, [&](std::size_t i, std::size_t at) { mask[i] = m_predicate(batch.block, at); });
    }

private:
    Predicate m_predicate;
};

template<typename Predicate>
TestPointer frameTest(Predicate predicate)
{
    return std::make_unique<FrameTest<Predicate>>(std::move(predicate));
}

template<typename Predicate>
TestPointer valueTest(ValuePointer value, Predicate predicate)
{
    return std::make_unique<ValueTest<Predicate>>(std::move(value), std::move(predicate));
}

bool matchesAt(const DataPattern &pattern, const uchar *data)
{
    for (std::size_t i = 0; i < static_cast<std::size_t>(pattern.size); ++i) {
        if ((data[i] & pattern.masks[i]) != pattern.bytes[i]) {
            return false;
        }
    }
    return true;
}

bool matches(const DataPattern &pattern, const uchar *data, int size)
{
    if (pattern.place == DataPattern::Whole ? size != pattern.size : size < pattern.size) {
        return false;
    }
    const int last = pattern.place == DataPattern::Anywhere ? size - pattern.size : 0;
    for (int offset = 0; offset <= last; ++offset) {
        if (matchesAt(pattern, data + offset)) {
            return true;
        }
    }
    return false;
}

class NegationNode : public TestNode
{
public:
    explicit NegationNode(TestPointer test)
        : m_test(std::move(test))
    {
    }
    void test(const FilterBatch &batch, Mask &mask) const override
    {
        Mask passed = mask;
        m_test->test(batch, passed);
        forEach(batch, [&](std::size_t i, std::size_t /*at*/) { mask[i] = mask[i] && !passed[i]; });
    }

private:
    TestPointer m_test;
};

class AllNode : public TestNode
{
public:
    explicit AllNode(std::vector<TestPointer> tests)
        : m_tests(std::move(tests))
    {
    }
    void test(const FilterBatch &batch, Mask &mask) const override
    {
        for (const TestPointer &test : m_tests) {
            if (isEmpty(batch, mask)) {
                return;
            }
            test->test(batch, mask);
        }
    }

private:
    std::vector<TestPointer> m_tests;
};

class AnyNode : public TestNode
{
public:
    explicit AnyNode(std::vector<TestPointer> tests)
        : m_tests(std::move(tests))
    {
    }
    void test(const FilterBatch &batch, Mask &mask) const override
    {
        Mask left = mask; // not passed yet
        for (const TestPointer &test : m_tests) {
            if (isEmpty(batch, left)) {
                return;
            }
            Mask passed = left;
            test->test(batch, passed);
            forEach(batch, [&](std::size_t i, std::size_t /*at*/) { left[i] = left[i] && !passed[i]; });
        }
        forEach(batch, [&](std::size_t i, std::size_t /*at*/) { mask[i] = mask[i] && !left[i]; });
    }

private:
    std::vector<TestPointer> m_tests;
};

} // namespace

namespace FilterNodes {

TestPointer comparison(ComparisonOperator op, ValuePointer left, ValuePointer right)
{
    return std::make_unique<ComparisonNode>(op, std::move(left), std::move(right));
}

TestPointer inRanges(ValuePointer value, std::vector<NumberRange> ranges)
{
    return valueTest(std::move(value), [list = std::move(ranges)](double number) {
        return std::any_of(list.begin(), list.end(),
                           [number](const NumberRange &range) { return number >= range.low && number <= range.high; });
    });
}

TestPointer isNotZero(ValuePointer value)
{
    return valueTest(std::move(value), [](double number) { return number < 0 || number > 0; });
}

TestPointer flag(BusFrame::Flag flag)
{
    return frameTest(
        [flag](const BusFrameStore::Block &block, std::size_t at) { return (block.flags[at] & flag) != 0; });
}

TestPointer direction(BusFrame::Direction direction)
{
    return frameTest([direction](const BusFrameStore::Block &block, std::size_t at) {
        return block.direction(static_cast<int>(at)) == direction;
    });
}

TestPointer data(const DataPattern &pattern)
{
    return frameTest([pattern](const BusFrameStore::Block &block, std::size_t at) {
        const int size = (block.flags[at] & BusFrame::Remote) != 0 ? 0 : block.length[at];
        if (size <= BusFrameStore::ShortLength) {
            return matches(pattern, block.shortData[at].data(), size);
        }
        return matches(pattern, block.frame(static_cast<int>(at)).data.data(), size);
    });
}

TestPointer names(std::vector<NameRule> rules)
{
    const auto isBefore = [](const NameRule &a, const NameRule &b) {
        return a.key < b.key;
    };
    std::stable_sort(rules.begin(), rules.end(), isBefore);
    return frameTest([rules = std::move(rules), isBefore](const BusFrameStore::Block &block, std::size_t at) {
        const FrameKey key = frameKey(block.identifier[at], block.flags[at]);
        auto rule = std::lower_bound(rules.begin(), rules.end(), NameRule{key, {}, false}, isBefore);
        for (; rule != rules.end() && rule->key == key; ++rule) {
            if (rule->channels.isEmpty() || rule->channels.contains(block.channel[at])) {
                return rule->passes;
            }
        }
        return false;
    });
}

TestPointer negation(TestPointer test)
{
    return std::make_unique<NegationNode>(std::move(test));
}

TestPointer all(std::vector<TestPointer> tests)
{
    return std::make_unique<AllNode>(std::move(tests));
}

TestPointer any(std::vector<TestPointer> tests)
{
    return std::make_unique<AnyNode>(std::move(tests));
}

} // namespace FilterNodes
