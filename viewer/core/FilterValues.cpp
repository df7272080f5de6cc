#include "viewer/core/FilterNodes.h"
#include "viewer/core/FilterSteps.h"

#include <cmath>
#include <limits>

namespace {

using FilterSteps::forEach;
using FilterSteps::KeySet;
using Mask = FilterBatch::Mask;
using Values = FilterBatch::Values;

constexpr double None = std::numeric_limits<double>::quiet_NaN();
constexpr double NanosecondsPerSecond = 1e9;

class ConstantNode : public ValueNode
{
public:
    explicit ConstantNode(double value)
        : m_value(value)
    {
    }
    void work(const FilterBatch & /*batch*/, const Mask & /*mask*/, Values &out) const override { out.fill(m_value); }

private:
    double m_value;
};

class FieldNode : public ValueNode
{
public:
    explicit FieldNode(FrameField field)
        : m_field(field)
    {
    }
    void work(const FilterBatch &batch, const Mask & /*mask*/, Values &out) const override
    {
        const BusFrameStore::Block &block = batch.block;
        switch (m_field) {
        case FrameField::Identifier:
            forEach(batch, [&](std::size_t i, std::size_t at) { // an error frame has none
                out[i] = (block.flags[at] & BusFrame::Error) != 0 ? None : block.identifier[at];
            });
            break;
        case FrameField::Channel:
            forEach(batch, [&](std::size_t i, std::size_t at) { out[i] = block.channel[at] + 1; });
            break;
        case FrameField::Length:
            forEach(batch, [&](std::size_t i, std::size_t at) { out[i] = block.length[at]; });
            break;
        case FrameField::Time:
            forEach(batch, [&](std::size_t i, std::size_t at) {
                const qint64 time = block.time[at];
                // As unsigned numbers: times of a hostile capture may lie further apart than a number can be.
                const auto since = static_cast<qint64>(static_cast<quint64>(time) - static_cast<quint64>(batch.start));
                out[i] = time == BusFrame::NoTime ? None : static_cast<double>(since) / NanosecondsPerSecond;
            });
            break;
        case FrameField::Number:
            forEach(batch, [&](std::size_t i, std::size_t /*at*/) {
                out[i] = static_cast<double>(batch.firstRow + static_cast<qint64>(i) + 1);
            });
            break;
        }
    }

private:
    FrameField m_field;
};

class ByteNode : public ValueNode
{
public:
    explicit ByteNode(int index)
        : m_index(index)
    {
    }
    void work(const FilterBatch &batch, const Mask &mask, Values &out) const override
    {
        forEach(batch, mask, [&](std::size_t i, std::size_t at) {
            // A remote frame has a length and no data.
            const bool isThere = m_index < batch.block.length[at] && (batch.block.flags[at] & BusFrame::Remote) == 0;
            out[i] = isThere ? batch.block.byte(static_cast<int>(at), m_index) : None;
        });
    }

private:
    int m_index;
};

class SignalNode : public ValueNode
{
public:
    SignalNode(std::shared_ptr<const SignalSource> source, int number)
        : m_source(std::move(source))
        , m_number(number)
        , m_carriers(m_source->carriers(number))
    {
    }
    void work(const FilterBatch &batch, const Mask &mask, Values &out) const override
    {
        forEach(batch, mask, [&](std::size_t i, std::size_t at) {
            const bool isThere =
                m_carriers.contains(batch.block, at) && (batch.block.flags[at] & BusFrame::Remote) == 0;
            out[i] = isThere ? m_source->value(m_number, batch.block.frame(static_cast<int>(at))) : None;
        });
    }

private:
    std::shared_ptr<const SignalSource> m_source;
    int m_number;
    KeySet m_carriers;
};

class NegativeNode : public ValueNode
{
public:
    explicit NegativeNode(ValuePointer value)
        : m_value(std::move(value))
    {
    }
    void work(const FilterBatch &batch, const Mask &mask, Values &out) const override
    {
        m_value->work(batch, mask, out);
        forEach(batch, mask, [&out](std::size_t i, std::size_t /*at*/) { out[i] = -out[i]; });
    }

private:
    ValuePointer m_value;
};

/// Beyond these a number has no whole value that fits.
constexpr double MaxWhole = 9007199254740992.0; // 2^53
constexpr qint64 MaxShift = 62;

double bitOperation(ArithmeticOperator op, double left, double right)
{
    if (!(std::abs(left) <= MaxWhole) || !(std::abs(right) <= MaxWhole)) {
        return None;
    }
    const auto a = static_cast<qint64>(left);
    const auto b = static_cast<qint64>(right);
    const bool isShift = op == ArithmeticOperator::ShiftLeft || op == ArithmeticOperator::ShiftRight;
    if (isShift && (b < 0 || b > MaxShift)) {
        return None;
    }
    switch (op) {
    case ArithmeticOperator::And:
        return static_cast<double>(a & b);
    case ArithmeticOperator::Or:
        return static_cast<double>(a | b);
    case ArithmeticOperator::Xor:
        return static_cast<double>(a ^ b);
    case ArithmeticOperator::ShiftLeft:
        return static_cast<double>(a) * static_cast<double>(qint64{1} << b);
    case ArithmeticOperator::ShiftRight:
        return static_cast<double>(a >> b);
    case ArithmeticOperator::Add:
    case ArithmeticOperator::Subtract:
    case ArithmeticOperator::Multiply:
    case ArithmeticOperator::Divide:
    case ArithmeticOperator::Remainder:
        break;
    }
    return None;
}

double operation(ArithmeticOperator op, double left, double right)
{
    switch (op) {
    case ArithmeticOperator::Add:
        return left + right;
    case ArithmeticOperator::Subtract:
        return left - right;
    case ArithmeticOperator::Multiply:
        return left * right;
    case ArithmeticOperator::Divide:
        return right == 0 ? None : left / right;
    case ArithmeticOperator::Remainder:
        return right == 0 ? None : std::fmod(left, right);
    case ArithmeticOperator::And:
    case ArithmeticOperator::Or:
    case ArithmeticOperator::Xor:
    case ArithmeticOperator::ShiftLeft:
    case ArithmeticOperator::ShiftRight:
        break;
    }
    return bitOperation(op, left, right);
}

class ArithmeticNode : public ValueNode
{
public:
    ArithmeticNode(ArithmeticOperator op, ValuePointer left, ValuePointer right)
        : m_operator(op)
        , m_left(std::move(left))
        , m_right(std::move(right))
    {
    }
    void work(const FilterBatch &batch, const Mask &mask, Values &out) const override
    {
        Values right;
        m_left->work(batch, mask, out);
        m_right->work(batch, mask, right);
        forEach(batch, mask,
                [&](std::size_t i, std::size_t /*at*/) { out[i] = operation(m_operator, out[i], right[i]); });
    }

private:
    ArithmeticOperator m_operator;
    ValuePointer m_left;
    ValuePointer m_right;
};

class FromTestNode : public ValueNode
{
public:
    explicit FromTestNode(TestPointer test)
        : m_test(std::move(test))
    {
    }
    void work(const FilterBatch &batch, const Mask &mask, Values &out) const override
    {
        Mask passed = mask;
        m_test->test(batch, passed);
        forEach(batch, [&](std::size_t i, std::size_t /*at*/) { out[i] = passed[i] ? 1 : 0; });
    }

private:
    TestPointer m_test;
};

} // namespace

namespace FilterNodes {

ValuePointer constant(double value)
{
    return std::make_unique<ConstantNode>(value);
}

ValuePointer field(FrameField field)
{
    return std::make_unique<FieldNode>(field);
}

ValuePointer dataByte(int index)
{
    return std::make_unique<ByteNode>(index);
}

ValuePointer signal(std::shared_ptr<const SignalSource> source, int number)
{
    return std::make_unique<SignalNode>(std::move(source), number);
}

ValuePointer negative(ValuePointer value)
{
    return std::make_unique<NegativeNode>(std::move(value));
}

ValuePointer arithmetic(ArithmeticOperator op, ValuePointer left, ValuePointer right)
{
    return std::make_unique<ArithmeticNode>(op, std::move(left), std::move(right));
}

ValuePointer fromTest(TestPointer test)
{
    return std::make_unique<FromTestNode>(std::move(test));
}

} // namespace FilterNodes
