#include "viewer/core/PlotExpression.h"

#include "viewer/core/FilterLexer.h"

#include <QCoreApplication>

#include <algorithm>
#include <cmath>

namespace {

constexpr double NanosecondsPerSecond = 1e9;
constexpr double LongestStep = 86400; // s

/// The word "of" that parts a curve's value from its filter; End, at the text's end, without one.
FilterToken partingWord(const std::vector<FilterToken> &tokens)
{
    const auto found =
        std::find_if(tokens.begin(), tokens.end(), [](const FilterToken &token) { return token.isWord("of"); });
    return found != tokens.end() ? *found : FilterToken();
}

/// Whether tokens are those of a rate; a step that is wrong is told in error.
bool parseRate(const std::vector<FilterToken> &tokens, int end, PlotExpression &expression,
               std::optional<FilterError> &error)
{
    if (!tokens.front().isWord("rate")) {
        return false;
    }
    const FilterToken &step = tokens[1];
    const bool hasStep = step.kind == FilterToken::Number && step.position < end;
    const FilterToken &behind = tokens[hasStep ? 2 : 1];
    if (hasStep && (step.number * NanosecondsPerSecond < 0.5 || step.number > LongestStep)) {
        error = {step.position, step.length,
                 QCoreApplication::translate("PlotExpression", "A step is from 1ns to a day: 100ms.")};
    } else if (behind.kind != FilterToken::End && behind.position < end) {
        error = {behind.position, behind.length,
                 QCoreApplication::translate("PlotExpression", "A step of time, such as 100ms, or “of” comes here.")};
    } else if (hasStep) {
        expression.step = std::llround(step.number * NanosecondsPerSecond);
    }
    return true;
}

} // namespace

std::optional<PlotExpression>
PlotExpression::parse(const QString &text, const std::shared_ptr<const SignalSource> &source, FilterError &error)
{
    const std::vector<FilterToken> tokens = filterTokens(text.left(Filter::MaxLength + 1));
    const FilterToken word = partingWord(tokens);
    const bool hasFilter = word.kind == FilterToken::Word;
    const int end = hasFilter ? word.position : text.size();
    PlotExpression expression;
    if (hasFilter) {
        const int behind = word.position + word.length;
        const std::optional<Filter> filter = Filter::parse(text.mid(behind), source, error);
        if (!filter) {
            error.position += behind;
            return std::nullopt;
        }
        expression.filter = *filter;
    }
    const QString valueText = text.left(end);
    std::optional<FilterError> wrongRate;
    const bool isSignal = source && source->signalNumber(valueText.trimmed()) >= 0;
    if (!isSignal && text.size() <= Filter::MaxLength && parseRate(tokens, end, expression, wrongRate)) {
        error = wrongRate.value_or(FilterError{});
        return wrongRate ? std::nullopt : std::make_optional(expression);
    }
    expression.value = FrameValue::parse(valueText, source, error);
    if (!expression.value) {
        return std::nullopt;
    }
    expression.signal = isSignal ? source->signalNumber(valueText.trimmed()) : -1;
    return expression;
}

FilterCompletion PlotExpression::complete(const QString &text, int cursor, const SignalSource *source)
{
    const int end = std::min<int>(cursor, text.size());
    const FilterToken word = partingWord(filterTokens(text.left(std::min<int>(end, Filter::MaxLength))));
    const int behind = word.position + word.length;
    if (word.kind == FilterToken::Word && behind < end) {
        FilterCompletion completion = Filter::complete(text.mid(behind), end - behind, source);
        completion.position += behind;
        return completion;
    }
    FilterCompletion completion = Filter::complete(text, end, source);
    const QString begun = text.mid(completion.position, completion.length);
    const QString before = text.left(completion.position).trimmed();
    const QString own = before.isEmpty() ? QStringLiteral("rate") : QStringLiteral("of");
    if (own.startsWith(begun, Qt::CaseInsensitive)) {
        completion.candidates.append(own);
    }
    return completion;
}
