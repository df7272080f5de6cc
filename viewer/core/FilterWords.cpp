#include "viewer/core/FilterWords.h"

namespace {

constexpr std::array<BinaryOperator, 10> BinaryOperators{{{"|", ArithmeticOperator::Or, 0},
                                                          {"^", ArithmeticOperator::Xor, 1},
                                                          {"&", ArithmeticOperator::And, 2},
                                                          {"<<", ArithmeticOperator::ShiftLeft, 3},
                                                          {">>", ArithmeticOperator::ShiftRight, 3},
                                                          {"+", ArithmeticOperator::Add, 4},
                                                          {"-", ArithmeticOperator::Subtract, 4},
                                                          {"*", ArithmeticOperator::Multiply, 5},
                                                          {"/", ArithmeticOperator::Divide, 5},
                                                          {"%", ArithmeticOperator::Remainder, 5}}};

int digit(QChar character)
{
    return QStringLiteral("0123456789abcdef").indexOf(character.toLower());
}

} // namespace

namespace FilterWords {

const BinaryOperator *binaryOperator(const FilterToken &token, int level)
{
    const BinaryOperator *found = find(BinaryOperators, token);
    return found != nullptr && found->level == level ? found : nullptr;
}

std::optional<DataPattern> dataPattern(const QString &text)
{
    QString digits = text;
    digits.remove(QLatin1Char(' '));
    DataPattern pattern;
    if (digits.startsWith(QLatin1Char('^'))) {
        pattern.place = DataPattern::AtStart;
        digits.remove(0, 1);
    }
    if (digits.isEmpty() || digits.size() % 2 != 0 || digits.size() > 2 * BusFrame::MaxLength) {
        return std::nullopt;
    }
    for (int i = 0; i < digits.size(); ++i) {
        const bool isFree = digits.at(i) == QLatin1Char('?');
        const int value = isFree ? 0 : digit(digits.at(i));
        if (value < 0) {
            return std::nullopt;
        }
        const auto at = static_cast<std::size_t>(i / 2);
        pattern.bytes[at] = static_cast<uchar>(pattern.bytes[at] << 4 | value);
        pattern.masks[at] = static_cast<uchar>(pattern.masks[at] << 4 | (isFree ? 0 : 15));
    }
    pattern.size = digits.size() / 2;
    return pattern;
}

} // namespace FilterWords
