// What is compared with what: the part of the parser that knows the kinds of operands.

#include "viewer/core/FilterParser.h"
#include "viewer/core/FilterWords.h"

#include <limits>
#include <utility>

void FilterParser::offerOperators(Kind kind)
{
    if (token().kind != FilterToken::End) {
        return;
    }
    switch (kind) {
    case Kind::Value:
        offer({QStringLiteral("=="), QStringLiteral("!="), QStringLiteral("<"), QStringLiteral("<="),
               QStringLiteral(">"), QStringLiteral(">="), QStringLiteral("in"), QStringLiteral("&")});
        break;
    case Kind::Direction:
        offer({QStringLiteral("=="), QStringLiteral("!=")});
        return;
    case Kind::Data:
    case Kind::Name:
        offer({QStringLiteral("~"), QStringLiteral("=="), QStringLiteral("!=")});
        return;
    case Kind::Test:
        break;
    }
    offer({QStringLiteral("and"), QStringLiteral("or")});
}

FilterParser::Operand FilterParser::relation()
{
    Operand left = arithmetic(0);
    offerOperators(left.kind);
    offer(left.signal >= 0 ? QStringList{QStringLiteral("~")} : QStringList());
    const bool isNotIn = token().isWord("not") && m_tokens[m_next + 1].isWord("in");
    m_next += isNotIn ? 1 : 0;
    Operand result;
    if (acceptWord("in")) {
        result = amongRanges(std::move(left), isNotIn);
    } else if (acceptSymbol("~")) {
        result = matched(left, false);
    } else if (acceptSymbol("!~")) {
        result = matched(left, true);
    } else if (const std::optional<ComparisonOperator> op = acceptComparison()) {
        result = compared(std::move(left), *op);
    } else {
        return left;
    }
    offerOperators(Kind::Test);
    return result;
}

std::optional<ComparisonOperator> FilterParser::acceptComparison()
{
    const NamedComparison *found = FilterWords::find(FilterWords::comparisons, token());
    m_next += found != nullptr ? 1 : 0;
    return found != nullptr ? std::make_optional(found->op) : std::nullopt;
}

FilterParser::Operand FilterParser::compared(Operand left, ComparisonOperator op)
{
    const FilterToken place = left.place;
    const bool isEquality = op == ComparisonOperator::Equal || op == ComparisonOperator::NotEqual;
    if (left.signal >= 0 && isEquality) {
        offerStates(left.signal);
        if (token().kind == FilterToken::Text) {
            return testOperand(stateTest(left.signal, true, op == ComparisonOperator::NotEqual), place);
        }
    }
    if (left.kind == Kind::Value || left.kind == Kind::Test) {
        ValuePointer right = asValue(arithmetic(0));
        return testOperand(FilterNodes::comparison(op, asValue(std::move(left)), std::move(right)), place);
    }
    if (!isEquality) {
        fail(m_tokens[m_next - 1], tr("This can be equal or not equal only."));
    }
    TestPointer test = left.kind == Kind::Direction ? directionTest()
                       : left.kind == Kind::Data    ? dataTest(true)
                                                    : nameTest(true);
    return testOperand(op == ComparisonOperator::Equal ? std::move(test) : FilterNodes::negation(std::move(test)),
                       place);
}

FilterParser::Operand FilterParser::matched(const Operand &left, bool isNegated)
{
    if (left.signal >= 0) {
        offerStates(left.signal);
        return testOperand(stateTest(left.signal, false, isNegated), left.place);
    }
    if (left.kind != Kind::Data && left.kind != Kind::Name) {
        fail(m_tokens[m_next - 1], tr("Only “data”, “name” and a signal alone are compared with a text."));
    }
    TestPointer test = left.kind == Kind::Data ? dataTest(false) : nameTest(false);
    return testOperand(isNegated ? FilterNodes::negation(std::move(test)) : std::move(test), left.place);
}

FilterParser::Operand FilterParser::amongRanges(Operand left, bool isNegated)
{
    const FilterToken place = left.place;
    ValuePointer value = asValue(std::move(left));
    std::vector<NumberRange> ranges;
    if (acceptSymbol("{")) {
        do {
            ranges.push_back(range());
        } while (acceptSymbol(","));
        needSymbol("}");
    } else {
        ranges.push_back(range());
    }
    TestPointer test = FilterNodes::inRanges(std::move(value), std::move(ranges));
    return testOperand(isNegated ? FilterNodes::negation(std::move(test)) : std::move(test), place);
}

NumberRange FilterParser::range()
{
    const FilterToken place = token();
    const double low = constant();
    if (!acceptSymbol("..")) {
        return {low, low};
    }
    const double high = constant();
    if (high < low) {
        fail(place, tr("The range's end is below its beginning."));
    }
    return {low, high};
}

double FilterParser::constant()
{
    const bool isNegative = acceptSymbol("-");
    const FilterToken place = take();
    if (place.kind != FilterToken::Number) {
        fail(place, tr("A number is missing here."));
    }
    return isNegative ? -place.number : place.number;
}

TestPointer FilterParser::directionTest()
{
    offer(FilterWords::names(FilterWords::directions));
    const FilterToken place = take();
    const NamedDirection *direction = FilterWords::find(FilterWords::directions, place);
    if (direction == nullptr) {
        fail(place, tr("A direction is “rx”, “tx” or “refused”."));
    }
    return FilterNodes::direction(direction->direction);
}

TestPointer FilterParser::dataTest(bool isWhole)
{
    const FilterToken place = take();
    std::optional<DataPattern> pattern;
    if (place.kind == FilterToken::Text) {
        pattern = FilterWords::dataPattern(place.text);
    }
    if (!pattern) {
        fail(place, tr("Data are bytes in quotation marks, such as \"DE AD ?? EF\"."));
    }
    if (isWhole) {
        pattern->place = DataPattern::Whole;
    }
    return FilterNodes::data(*pattern);
}

TestPointer FilterParser::nameTest(bool isWhole)
{
    const FilterToken place = take();
    if (place.kind != FilterToken::Text) {
        fail(place, tr("A name is a text in quotation marks."));
    }
    std::vector<NameRule> rules;
    const QVector<SignalSource::Message> messages =
        m_names != nullptr ? m_names->messages() : QVector<SignalSource::Message>();
    for (const SignalSource::Message &message : messages) {
        const bool passes =
            isWhole ? message.name == place.text : message.name.contains(place.text, Qt::CaseInsensitive);
        rules.push_back({message.key, message.channels, passes});
    }
    return FilterNodes::names(std::move(rules));
}

void FilterParser::offerStates(int signal)
{
    if (token().kind != FilterToken::End) {
        return;
    }
    for (const SignalSource::State &state : m_names->states(signal)) {
        const QLatin1Char quote(state.text.contains(QLatin1Char('"')) ? '\'' : '"');
        offer({quote + state.text + quote});
    }
}

/// As with numbers, a frame without the signal passes neither way.
TestPointer FilterParser::stateTest(int signal, bool isWhole, bool isNegated)
{
    const FilterToken place = take();
    if (place.kind != FilterToken::Text) {
        fail(place, tr("What a value stands for is a text in quotation marks."));
    }
    std::vector<NumberRange> values;
    const QVector<SignalSource::State> states = m_names->states(signal);
    for (const SignalSource::State &state : states) {
        if (isWhole ? state.text == place.text : state.text.contains(place.text, Qt::CaseInsensitive)) {
            values.push_back({state.value, state.value});
        }
    }
    if (values.empty()) {
        fail(place, tr("No value of the signal stands for this text."));
    }
    TestPointer test = FilterNodes::inRanges(signalValue(signal), std::move(values));
    if (!isNegated) {
        return test;
    }
    constexpr double Infinity = std::numeric_limits<double>::infinity();
    std::vector<TestPointer> tests;
    tests.push_back(FilterNodes::inRanges(signalValue(signal), {{-Infinity, Infinity}}));
    tests.push_back(FilterNodes::negation(std::move(test)));
    return FilterNodes::all(std::move(tests));
}
