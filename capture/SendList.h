#pragma once

#include "capture/DataModel.h"

#include <optional>
#include <vector>

/// The order in which a send list goes out: which row is next, and after what time. Works on copies of the rows; plain
/// arithmetic without a clock.
class SendList
{
public:
    enum class Mode {
        Parallel, ///< one send of each row in turn, until no row has sends left
        Order,    ///< all sends of a row, then the next row; the whole list so often as it is repeated
    };

    /// Starts with the first row; without rows nothing runs. repeat and listInterval, the milliseconds between two
    /// repetitions, are 1..65535 and used in order mode only.
    void start(std::vector<DataModel> rows, int repeat, int listInterval, Mode mode);
    void stop();
    bool isRunning() const { return !m_rows.empty(); }
    /// Index of the row that is sent next; only while it runs.
    std::size_t currentIndex() const { return m_current; }
    const DataModel &current() const { return m_rows.at(m_current); }
    /// The current row has been sent. Goes on to what is next and gives the milliseconds until then; nothing at the end
    /// of the list, which then no longer runs. Only while it runs.
    std::optional<int> advance();

private:
    bool moveInParallel();
    bool moveInOrder(int &wait);

    std::vector<DataModel> m_rows;
    std::vector<int> m_left; ///< sends of each row
    std::size_t m_current = 0;
    int m_repeat = 0; ///< repetitions left, the one that runs included
    int m_listInterval = 0;
    Mode m_mode = Mode::Parallel;
};
