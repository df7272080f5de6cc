#pragma once

#include <QtGlobal>

#include <array>
#include <memory>
#include <vector>

/// Values over time, such as a signal's, and their least and greatest by ever larger parts, so that a picture of any
/// section costs the same. A point takes 17 bytes, and growing moves none. Times never go back: a point whose time did
/// stands at the greatest time before it. Not thread-safe.
class Series
{
public:
    struct Point
    {
        qint64 time; ///< nanoseconds
        double value;
    };
    /// A state and how long it was there.
    struct Step
    {
        qint64 begin;
        qint64 end; ///< where the next one begins, or the last point's time
        double value;
        bool isMixed; ///< several states, too short for the picture; value is the last one
    };

    /// values must be numbers.
    void append(qint64 time, double value);
    void append(const std::vector<Point> &points);

    std::size_t size() const { return m_size; }
    bool isEmpty() const { return m_size == 0; }
    Point at(std::size_t index) const { return {timeAt(index), valueAt(index)}; }
    /// The last point not behind time, or size() when there is none: what a cursor shows.
    std::size_t indexAt(qint64 time) const;
    /// The first point at time or behind it; size() when there is none.
    std::size_t firstFrom(qint64 time) const;

    double least() const; ///< of all; 0 when there is none
    double greatest() const;
    /// Of the points [begin, end), which is not empty.
    void range(std::size_t begin, std::size_t end, double &least, double &greatest) const;

    /// What a line through the points from begin to end looks like in a picture that is columns wide: of each column
    /// all points when they are few, otherwise its first and its last one and between them its least and greatest value
    /// at the time of one of its points; and the points next to the section on both sides, so that the line reaches the
    /// edges. points is cleared first.
    void decimate(qint64 begin, qint64 end, int columns, std::vector<Point> &points) const;
    /// The states from begin to end in such a picture; equal ones that follow each other are one. steps is cleared
    /// first.
    void decimateSteps(qint64 begin, qint64 end, int columns, std::vector<Step> &steps) const;

private:
    struct Range
    {
        double least;
        double greatest;
    };
    static constexpr std::size_t FirstPart = 64;  ///< points of a part of the first level
    static constexpr std::size_t PartsOfPart = 8; ///< parts of a level that make one of the next
    static constexpr std::size_t FewPoints = 4;
    static constexpr std::size_t ChunkSize = 1U << 14U; ///< a multiple of FirstPart

    struct Chunk
    {
        std::array<qint64, ChunkSize> times;
        std::array<double, ChunkSize> values;
    };

    qint64 timeAt(std::size_t index) const { return m_chunks[index / ChunkSize]->times[index % ChunkSize]; }
    double valueAt(std::size_t index) const { return m_chunks[index / ChunkSize]->values[index % ChunkSize]; }
    /// The first index in [begin, end) at whose time isBefore(time) is false; end when there is none.
    template<typename Predicate>
    std::size_t partition(std::size_t begin, std::size_t end, Predicate isBefore) const;
    template<typename Function>
    void forEachColumn(std::size_t first, std::size_t last, qint64 begin, qint64 end, int columns,
                       Function function) const;
    static void widen(Range &range, const Range &other);
    void completeParts();
    Range rangeOf(std::size_t begin, std::size_t end) const;
    void addStep(std::size_t begin, std::size_t end, std::vector<Step> &steps) const;

    std::vector<std::unique_ptr<Chunk>> m_chunks;
    std::size_t m_size = 0;
    std::vector<std::vector<Range>> m_levels; ///< of complete parts only
};
