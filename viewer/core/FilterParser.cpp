#include "viewer/core/FilterParser.h"

#include "viewer/core/FilterWords.h"

#include <algorithm>
#include <utility>

namespace {

// Both bound what a wrong or hostile text makes the stack grow to.
constexpr int MaxDepth = 50;
constexpr int MaxOperators = 200;

} // namespace

FilterParser::FilterParser(const QString &text, const std::shared_ptr<const SignalSource> &source)
    : m_source(source)
    , m_names(source.get())
    , m_tokens(filterTokens(text))
{
}

FilterParser::FilterParser(const QString &text, const SignalSource *source)
    : m_names(source)
    , m_tokens(filterTokens(text))
{
}

FilterToken FilterParser::take()
{
    FilterToken taken = token();
    if (taken.kind == FilterToken::Wrong) {
        fail(taken, taken.text);
    }
    if (taken.kind != FilterToken::End) {
        ++m_next;
    }
    return taken;
}

bool FilterParser::acceptSymbol(const char *symbol)
{
    const bool isHere = token().isSymbol(symbol);
    m_next += isHere ? 1 : 0;
    return isHere;
}

bool FilterParser::acceptWord(const char *word)
{
    const bool isHere = token().isWord(word);
    m_next += isHere ? 1 : 0;
    return isHere;
}

void FilterParser::needSymbol(const char *symbol)
{
    offer({QLatin1String(symbol)});
    if (!acceptSymbol(symbol)) {
        fail(token(), tr("“%1” is missing here.").arg(QLatin1String(symbol)));
    }
}

void FilterParser::offer(const QStringList &words)
{
    if (token().kind == FilterToken::End) {
        m_offers += words;
    }
}

void FilterParser::fail(const FilterToken &place, const QString &text)
{
    throw FilterError{place.position, place.length, place.kind == FilterToken::Wrong ? place.text : text};
}

void FilterParser::count(int &counter, int most)
{
    if (++counter > most) {
        fail(token(), tr("The expression is too long."));
    }
}

void FilterParser::needEnd()
{
    if (token().kind != FilterToken::End) {
        fail(token(), tr("“and”, “or” or a comparison is missing before this."));
    }
}

TestPointer FilterParser::test()
{
    TestPointer test = asTest(expression());
    needEnd();
    return test;
}

ValuePointer FilterParser::value()
{
    ValuePointer value = asValue(expression());
    needEnd();
    return value;
}

TestPointer FilterParser::asTest(Operand operand)
{
    switch (operand.kind) {
    case Kind::Test:
        return std::move(operand.test);
    case Kind::Value:
        return FilterNodes::isNotZero(std::move(operand.value));
    case Kind::Direction:
    case Kind::Data:
    case Kind::Name:
        break;
    }
    fail(operand.place, tr("A comparison is missing behind this."));
}

ValuePointer FilterParser::asValue(Operand operand)
{
    switch (operand.kind) {
    case Kind::Value:
        return std::move(operand.value);
    case Kind::Test:
        return FilterNodes::fromTest(std::move(operand.test));
    case Kind::Direction:
    case Kind::Data:
    case Kind::Name:
        break;
    }
    fail(operand.place, tr("This is no number."));
}

FilterParser::Operand FilterParser::testOperand(TestPointer test, const FilterToken &place)
{
    Operand operand;
    operand.kind = Kind::Test;
    operand.test = std::move(test);
    operand.place = place;
    return operand;
}

FilterParser::Operand FilterParser::fieldOperand(FrameField field, const FilterToken &place)
{
    Operand operand;
    operand.value = FilterNodes::field(field);
    operand.place = place;
    return operand;
}

FilterParser::Operand FilterParser::expression()
{
    count(m_depth, MaxDepth);
    Operand operand = either();
    --m_depth;
    return operand;
}

FilterParser::Operand FilterParser::either()
{
    Operand first = both();
    const auto acceptOr = [this] {
        return acceptWord("or") || acceptSymbol("||");
    };
    if (!acceptOr()) {
        return first;
    }
    const FilterToken place = first.place;
    std::vector<TestPointer> tests;
    tests.push_back(asTest(std::move(first)));
    do {
        tests.push_back(asTest(both()));
    } while (acceptOr());
    return testOperand(FilterNodes::any(std::move(tests)), place);
}

FilterParser::Operand FilterParser::both()
{
    Operand first = negated();
    const auto acceptAnd = [this] {
        return acceptWord("and") || acceptSymbol("&&");
    };
    if (!acceptAnd()) {
        return first;
    }
    const FilterToken place = first.place;
    std::vector<TestPointer> tests;
    tests.push_back(asTest(std::move(first)));
    do {
        tests.push_back(asTest(negated()));
    } while (acceptAnd());
    return testOperand(FilterNodes::all(std::move(tests)), place);
}

FilterParser::Operand FilterParser::negated()
{
    const FilterToken place = token();
    bool isNegated = false;
    bool isAny = false;
    while (acceptWord("not") || acceptSymbol("!")) {
        isNegated = !isNegated;
        isAny = true;
    }
    Operand operand = relation();
    if (!isAny) {
        return operand;
    }
    TestPointer test = asTest(std::move(operand));
    return testOperand(isNegated ? FilterNodes::negation(std::move(test)) : std::move(test), place);
}

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
    if (left.kind == Kind::Value || left.kind == Kind::Test) {
        ValuePointer right = asValue(arithmetic(0));
        return testOperand(FilterNodes::comparison(op, asValue(std::move(left)), std::move(right)), place);
    }
    if (op != ComparisonOperator::Equal && op != ComparisonOperator::NotEqual) {
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
    if (left.kind != Kind::Data && left.kind != Kind::Name) {
        fail(m_tokens[m_next - 1], tr("Only “data” and “name” are compared with a text."));
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

FilterParser::Operand FilterParser::arithmetic(int level)
{
    if (level > BinaryOperator::LastLevel) {
        return unary();
    }
    Operand left = arithmetic(level + 1);
    while (const BinaryOperator *found = FilterWords::binaryOperator(token(), level)) {
        count(m_operators, MaxOperators);
        ++m_next;
        ValuePointer right = asValue(arithmetic(level + 1));
        Operand result;
        result.place = left.place;
        result.value = FilterNodes::arithmetic(found->op, asValue(std::move(left)), std::move(right));
        left = std::move(result);
    }
    return left;
}

FilterParser::Operand FilterParser::unary()
{
    const FilterToken place = token();
    if (!acceptSymbol("-")) {
        return primary();
    }
    count(m_operators, MaxOperators);
    Operand operand;
    operand.place = place;
    operand.value = FilterNodes::negative(asValue(unary()));
    return operand;
}

FilterParser::Operand FilterParser::primary()
{
    if (token().kind == FilterToken::End) {
        offer(FilterWords::names(FilterWords::fields) +
              QStringList{QStringLiteral("dir"), QStringLiteral("data"), QStringLiteral("name")} +
              FilterWords::names(FilterWords::flags) + FilterWords::names(FilterWords::directions) +
              QStringList{QStringLiteral("not")});
        offer(m_names != nullptr ? m_names->signalNames() : QStringList());
    }
    const FilterToken place = take();
    switch (place.kind) {
    case FilterToken::Number: {
        Operand operand;
        operand.value = FilterNodes::constant(place.number);
        operand.place = place;
        return operand;
    }
    case FilterToken::Word:
        return word(place);
    case FilterToken::Symbol:
        if (place.text == QLatin1String("(")) {
            Operand operand = expression();
            needSymbol(")");
            operand.place = place;
            return operand;
        }
        break;
    case FilterToken::Text:
    case FilterToken::End:
    case FilterToken::Wrong:
        break;
    }
    fail(place, tr("A field, a signal or a number is missing here."));
}

FilterParser::Operand FilterParser::word(const FilterToken &place)
{
    if (const NamedField *found = FilterWords::find(FilterWords::fields, place)) {
        return fieldOperand(found->field, place);
    }
    if (const NamedFlag *found = FilterWords::find(FilterWords::flags, place)) {
        return testOperand(FilterNodes::flag(found->flag), place);
    }
    if (const NamedDirection *found = FilterWords::find(FilterWords::directions, place)) {
        return testOperand(FilterNodes::direction(found->direction), place);
    }
    if (place.isWord("data")) {
        return dataOrByte(place);
    }
    Operand operand;
    operand.place = place;
    if (place.isWord("dir")) {
        operand.kind = Kind::Direction;
        return operand;
    }
    if (place.isWord("name")) {
        operand.kind = Kind::Name;
        return operand;
    }
    return signal(place);
}

FilterParser::Operand FilterParser::dataOrByte(const FilterToken &place)
{
    Operand operand;
    operand.place = place;
    offer({QStringLiteral("[")});
    if (!acceptSymbol("[")) {
        operand.kind = Kind::Data;
        return operand;
    }
    const FilterToken index = take();
    const int number = static_cast<int>(std::min(index.number, double{BusFrame::MaxLength}));
    if (index.kind != FilterToken::Number || number >= BusFrame::MaxLength || number != index.number) {
        fail(index, tr("A byte's number is 0 to %1.").arg(BusFrame::MaxLength - 1));
    }
    needSymbol("]");
    operand.value = FilterNodes::dataByte(number);
    return operand;
}

FilterParser::Operand FilterParser::signal(const FilterToken &place)
{
    const int number = m_names != nullptr ? m_names->signalNumber(place.text) : -1;
    if (number < 0) {
        fail(place, tr("“%1” is neither a field nor a signal.").arg(place.text));
    }
    Operand operand;
    operand.place = place;
    operand.value = m_source ? FilterNodes::signal(m_source, number) : FilterNodes::constant(0);
    return operand;
}
