#pragma once

#include "viewer/core/Filter.h"
#include "viewer/core/FilterLexer.h"
#include "viewer/core/FilterNodes.h"

#include <QCoreApplication>

/// Makes nodes of an expression's text, from its tokens and without looking back. A wrong text is thrown as
/// FilterError.
class FilterParser
{
    Q_DECLARE_TR_FUNCTIONS(Filter)

public:
    /// text and source must outlive this; source may be null.
    FilterParser(const QString &text, const std::shared_ptr<const SignalSource> &source);
    /// Only for what may stand at the end of text.
    FilterParser(const QString &text, const SignalSource *source);

    TestPointer test();
    ValuePointer value();
    /// After test() has returned or thrown: what may stand at the end of the text.
    const QStringList &offers() const { return m_offers; }

private:
    enum class Kind { Value, Test, Direction, Data, Name };
    struct Operand
    {
        Kind kind = Kind::Value;
        ValuePointer value; ///< with Kind::Value
        TestPointer test;   ///< with Kind::Test
        int signal = -1;    ///< the value is that of this one
        FilterToken place;  ///< where it begins
    };

    const FilterToken &token() const { return m_tokens[m_next]; }
    FilterToken take();
    bool acceptSymbol(const char *symbol);
    bool acceptWord(const char *word);
    void needSymbol(const char *symbol);
    /// What may stand here, which is remembered where the text ends here.
    void offer(const QStringList &words);
    [[noreturn]] static void fail(const FilterToken &place, const QString &text);
    void needEnd();
    void count(int &counter, int most);

    Operand expression();
    Operand either();
    Operand both();
    Operand negated();
    Operand relation();
    Operand arithmetic(int level);
    Operand unary();
    Operand primary();
    Operand word(const FilterToken &place);
    Operand dataOrByte(const FilterToken &place);
    Operand signal(const FilterToken &place);
    static Operand fieldOperand(FrameField field, const FilterToken &place);
    static Operand testOperand(TestPointer test, const FilterToken &place);

    std::optional<ComparisonOperator> acceptComparison();
    Operand compared(Operand left, ComparisonOperator op);
    Operand matched(const Operand &left, bool isNegated);
    Operand amongRanges(Operand left, bool isNegated);
    NumberRange range();
    double constant();
    TestPointer directionTest();
    TestPointer dataTest(bool isWhole);
    TestPointer nameTest(bool isWhole);
    TestPointer stateTest(int signal, bool isWhole, bool isNegated);
    ValuePointer signalValue(int signal) const;
    void offerStates(int signal);

    static TestPointer asTest(Operand operand);
    static ValuePointer asValue(Operand operand);
    void offerOperators(Kind kind);

    std::shared_ptr<const SignalSource> m_source;
    const SignalSource *m_names;
    std::vector<FilterToken> m_tokens;
    std::size_t m_next = 0;
    int m_depth = 0;
    int m_operators = 0;
    QStringList m_offers;
};
