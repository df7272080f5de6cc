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
    operand.signal = number;
    operand.value = signalValue(number);
    return operand;
}

ValuePointer FilterParser::signalValue(int signal) const
{
    return m_source ? FilterNodes::signal(m_source, signal) : FilterNodes::constant(0);
}
