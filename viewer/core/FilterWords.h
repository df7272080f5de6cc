#pragma once

#include "viewer/core/FilterLexer.h"
#include "viewer/core/FilterNodes.h"

#include <QStringList>

#include <algorithm>
#include <array>
#include <optional>

struct NamedField
{
    const char *name;
    FrameField field;
};
struct NamedFlag
{
    const char *name;
    BusFrame::Flag flag;
};
struct NamedDirection
{
    const char *name;
    BusFrame::Direction direction;
};
struct NamedComparison
{
    const char *name;
    ComparisonOperator op;
};
struct BinaryOperator
{
    static constexpr int LastLevel = 5;

    const char *name;
    ArithmeticOperator op;
    int level; ///< 0 to LastLevel; higher ones bind closer
};

/// The words and symbols of the language.
namespace FilterWords {

inline constexpr std::array<NamedField, 5> fields{{{"id", FrameField::Identifier},
                                                   {"channel", FrameField::Channel},
                                                   {"len", FrameField::Length},
                                                   {"time", FrameField::Time},
                                                   {"number", FrameField::Number}}};
inline constexpr std::array<NamedFlag, 7> flags{{{"ext", BusFrame::Extended},
                                                 {"remote", BusFrame::Remote},
                                                 {"error", BusFrame::Error},
                                                 {"fd", BusFrame::Fd},
                                                 {"brs", BusFrame::BitRateSwitch},
                                                 {"esi", BusFrame::ErrorStateIndicator},
                                                 {"lin", BusFrame::Lin}}};
inline constexpr std::array<NamedDirection, 3> directions{
    {{"rx", BusFrame::Received}, {"tx", BusFrame::Sent}, {"refused", BusFrame::Refused}}};
inline constexpr std::array<NamedComparison, 7> comparisons{{{"==", ComparisonOperator::Equal},
                                                             {"=", ComparisonOperator::Equal},
                                                             {"!=", ComparisonOperator::NotEqual},
                                                             {"<", ComparisonOperator::Less},
                                                             {"<=", ComparisonOperator::LessEqual},
                                                             {">", ComparisonOperator::Greater},
                                                             {">=", ComparisonOperator::GreaterEqual}}};

/// The row of a table that a word or symbol names; null for any other token.
template<typename Table>
const typename Table::value_type *find(const Table &table, const FilterToken &token)
{
    const auto found = std::find_if(table.begin(), table.end(), [&token](const auto &row) {
        return token.isWord(row.name) || token.isSymbol(row.name);
    });
    return found != table.end() ? &*found : nullptr;
}

template<typename Table>
QStringList names(const Table &table)
{
    QStringList list;
    for (const auto &row : table) {
        list.append(QLatin1String(row.name));
    }
    return list;
}

/// Null where token is none, or one of another level.
const BinaryOperator *binaryOperator(const FilterToken &token, int level);

/// "DE AD ?? E?", blanks between bytes or not; with "^" in front it is where the data begins. Nothing for another text.
std::optional<DataPattern> dataPattern(const QString &text);

} // namespace FilterWords
