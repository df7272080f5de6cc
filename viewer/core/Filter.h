#pragma once

#include "viewer/core/BusFrameStore.h"
#include "viewer/core/SignalSource.h"

#include <QString>
#include <QStringList>

#include <memory>
#include <optional>
#include <vector>

class FrameValue;
class TestNode;
class ValueNode;

/// What is wrong with an expression, and where.
struct FilterError
{
    int position; ///< of the first character, from 0
    int length;   ///< 0 at the end of the text
    QString text; ///< in the user's language
};

/// What may stand at a place of an expression: the text from position on, length characters, can be replaced with any
/// of the candidates.
struct FilterCompletion
{
    static constexpr int MaxCandidates = 1000; ///< the first of more

    int position = 0;
    int length = 0;
    QStringList candidates;
};

/// A test of frames, made of a text as users type it; docs/filters.md describes the language. Does not change, and is
/// cheap to copy, so any thread may use it.
class Filter
{
public:
    static constexpr int MaxLength = 10000;

    /// Passes all frames, as does an empty text.
    Filter() = default;
    /// source may be null. Nothing, with error, where text is wrong.
    static std::optional<Filter> parse(const QString &text, const std::shared_ptr<const SignalSource> &source,
                                       FilterError &error);
    /// cursor: number of characters before the place.
    static FilterCompletion complete(const QString &text, int cursor, const SignalSource *source);

    /// Passes what both pass.
    static Filter both(const Filter &first, const Filter &second);

    bool passesAll() const { return m_test == nullptr; }
    bool passes(const BusFrameStore &store, qint64 row) const;
    /// Adds those of count rows from first on that pass, by their index in the block; all rows are in one block.
    void passing(const BusFrameStore &store, qint64 first, int count, std::vector<quint16> &indices) const;
    /// The first of these rows that passes, or with isBackward the last; nothing when none does.
    std::optional<qint64> firstPassing(const BusFrameStore &store, qint64 first, int count, bool isBackward) const;

private:
    friend class FrameValue;

    std::shared_ptr<const TestNode> m_test;
};

/// A number for each frame: "Speed", "data[0] << 8 | data[1]"; the language is the filters'.
class FrameValue
{
public:
    /// source may be null. Nothing, with error, where text is wrong.
    static std::optional<FrameValue> parse(const QString &text, const std::shared_ptr<const SignalSource> &source,
                                           FilterError &error);

    /// One frame's value.
    struct Sample
    {
        quint16 index; ///< in the block
        double value;
    };

    /// Adds the values of those of count rows from first on that have one and pass; all rows are in one block.
    void samples(const BusFrameStore &store, const Filter &filter, qint64 first, int count,
                 std::vector<Sample> &samples) const;

private:
    std::shared_ptr<const ValueNode> m_value;
};
