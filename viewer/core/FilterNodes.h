#pragma once

#include "viewer/core/BusFrameStore.h"
#include "viewer/core/FrameKey.h"
#include "viewer/core/SignalSource.h"

#include <array>
#include <memory>
#include <vector>

/// Rows of one block that an expression is worked out for at a time: few enough for all steps to stay in the cache.
struct FilterBatch
{
    static constexpr int Size = 256;
    using Mask = std::array<bool, Size>;
    using Values = std::array<double, Size>;

    const BusFrameStore::Block &block;
    int first; ///< index in the block
    int count; ///< at most Size
    qint64 firstRow;
    qint64 start; ///< of the capture
};

/// A number for each frame; not a number (NaN) where a frame has none.
class ValueNode
{
public:
    ValueNode() = default;
    virtual ~ValueNode() = default;
    ValueNode(const ValueNode &) = delete;
    ValueNode &operator=(const ValueNode &) = delete;

    /// Only what mask has needs to be right.
    virtual void work(const FilterBatch &batch, const FilterBatch::Mask &mask, FilterBatch::Values &out) const = 0;
};

/// Yes or no for each frame.
class TestNode
{
public:
    TestNode() = default;
    virtual ~TestNode() = default;
    TestNode(const TestNode &) = delete;
    TestNode &operator=(const TestNode &) = delete;

    /// Takes away from mask what does not pass.
    virtual void test(const FilterBatch &batch, FilterBatch::Mask &mask) const = 0;
};

using ValuePointer = std::unique_ptr<ValueNode>;
using TestPointer = std::unique_ptr<TestNode>;

enum class FrameField {
    Identifier,
    Channel, ///< from 1
    Length,
    Time,  ///< seconds since the start
    Number ///< of the frame, from 1
};
/// Whether frames pass by their name.
struct NameRule
{
    FrameKey key;
    QVector<int> channels; ///< from 0; empty: all
    bool passes;
};
enum class ArithmeticOperator { Add, Subtract, Multiply, Divide, Remainder, And, Or, Xor, ShiftLeft, ShiftRight };
enum class ComparisonOperator { Equal, NotEqual, Less, LessEqual, Greater, GreaterEqual };

/// low to high, both included.
struct NumberRange
{
    double low;
    double high;
};

/// Bytes of data, some of whose digits may be anything.
struct DataPattern
{
    enum Place { Anywhere, AtStart, Whole };

    std::array<uchar, BusFrame::MaxLength> bytes{};
    std::array<uchar, BusFrame::MaxLength> masks{}; ///< 0 where a digit is free
    int size = 0;
    Place place = Anywhere;
};

namespace FilterNodes {

ValuePointer constant(double value);
ValuePointer field(FrameField field);
/// index: 0 to 63.
ValuePointer dataByte(int index);
ValuePointer signal(std::shared_ptr<const SignalSource> source, int number);
ValuePointer negative(ValuePointer value);
/// Works on whole numbers where the operator is one of bits; dividing by 0 gives none.
ValuePointer arithmetic(ArithmeticOperator op, ValuePointer left, ValuePointer right);
/// 1 and 0.
ValuePointer fromTest(TestPointer test);

TestPointer comparison(ComparisonOperator op, ValuePointer left, ValuePointer right);
TestPointer inRanges(ValuePointer value, std::vector<NumberRange> ranges);
TestPointer isNotZero(ValuePointer value);
TestPointer flag(BusFrame::Flag flag);
TestPointer direction(BusFrame::Direction direction);
TestPointer data(const DataPattern &pattern);
/// Of rules for the same frame the first counts; frames without any do not pass.
TestPointer names(std::vector<NameRule> rules);
TestPointer negation(TestPointer test);
TestPointer all(std::vector<TestPointer> tests);
TestPointer any(std::vector<TestPointer> tests);

} // namespace FilterNodes
