#include "viewer/core/LastSignals.h"

#include <QHash>
#include <QSet>

#include <algorithm>
#include <functional>
#include <utility>

namespace {

constexpr qint64 StopRows = 4096;                ///< between two looks at the flag
constexpr qint64 PartialRows = qint64{1} << 20U; ///< after so many what was found so far is handed out

} // namespace

class LastSignals::Search
{
public:
    Search(const BusFrameStore &store, std::shared_ptr<const DatabaseSignals> source, qint64 row)
        : m_store(store)
        , m_source(*source)
    {
        rows.row = row;
        rows.ofMessages.assign(static_cast<std::size_t>(m_source.messageCount()), -1);
        m_isSeen.assign(rows.ofMessages.size(), false);
        m_left.assign(rows.ofMessages.size(), 0);
        rows.ofSignals.assign(static_cast<std::size_t>(m_source.signalCount()), -1);
        rows.source = std::move(source);
    }

    /// newest: the last row of each identifier. Of a message's newest frame all that is in it is right.
    void lookAtNewest(std::vector<qint64> newest)
    {
        std::sort(newest.begin(), newest.end(), std::greater<>());
        QSet<FrameKey> keys;
        for (const qint64 row : newest) {
            const BusFrame frame = m_store.frame(row);
            keys.insert(frameKey(frame.identifier, frame.flags));
            const int message = m_source.messageOf(frame);
            if (message >= 0 && !m_isSeen[static_cast<std::size_t>(message)]) {
                m_isSeen[static_cast<std::size_t>(message)] = true;
                if (m_source.keys(message).size() == 1) { // otherwise another identifier may have a newer one
                    take(frame, message, row);
                }
            }
        }
        for (int message = 0; message < m_source.messageCount(); ++message) {
            want(message, keys);
        }
    }

    /// Looks further back for what is left, down to the row behind floor. Calls isStopped(row) now and then; false
    /// when it says so.
    template<typename Function>
    bool lookBack(qint64 floor, Function isStopped)
    {
        for (qint64 row = rows.row; row > floor && !m_wanted.isEmpty(); --row) {
            if (row % StopRows == 0 && isStopped(row)) {
                return false;
            }
            const BusFrameStore::Block &block = m_store.block(BusFrameStore::blockOf(row));
            const auto at = static_cast<std::size_t>(BusFrameStore::indexInBlock(row));
            if (m_wanted.contains(frameKey(block.identifier[at], block.flags[at]))) {
                const BusFrame frame = block.frame(static_cast<int>(at));
                const int message = m_source.messageOf(frame);
                if (message >= 0 && m_left[static_cast<std::size_t>(message)] > 0) {
                    take(frame, message, row);
                    forgetWhenDone(message);
                }
            }
        }
        return true;
    }

    /// What is still not found is where it was at an earlier row.
    void takeFrom(const Rows &before)
    {
        const auto takeAll = [](std::vector<qint64> &to, const std::vector<qint64> &from) {
            std::transform(to.begin(), to.end(), from.begin(), to.begin(),
                           [](qint64 found, qint64 earlier) { return found >= 0 ? found : earlier; });
        };
        takeAll(rows.ofMessages, before.ofMessages);
        takeAll(rows.ofSignals, before.ofSignals);
    }

    Rows rows;

private:
    void take(const BusFrame &frame, int message, qint64 row)
    {
        if (!hasSoundData(frame)) {
            return;
        }
        const auto set = [row, &left = m_left[static_cast<std::size_t>(message)]](qint64 &found) {
            left -= found < 0 ? 1 : 0;
            found = found < 0 ? row : found;
        };
        set(rows.ofMessages[static_cast<std::size_t>(message)]);
        const auto first = static_cast<std::size_t>(m_source.firstSignal(message));
        m_source.decoder(message).decode(frame.data.data(), frame.length,
                                         [&](const SignalDecoder & /*signal*/, int place) {
                                             set(rows.ofSignals[first + static_cast<std::size_t>(place)]);
                                         });
    }

    /// Notes what is to be looked for further back.
    void want(int message, const QSet<FrameKey> &keys)
    {
        const auto at = static_cast<std::size_t>(message);
        const QVector<FrameKey> &own = m_source.keys(message);
        const bool isThere =
            m_isSeen[at] || (own.size() > 1 &&
                             std::any_of(own.begin(), own.end(), [&keys](FrameKey key) { return keys.contains(key); }));
        const int count = m_source.message(message).content.size();
        const auto begin = rows.ofSignals.begin() + m_source.firstSignal(message);
        m_left[at] =
            isThere ? static_cast<int>(std::count(begin, begin + count, -1)) + (rows.ofMessages[at] < 0 ? 1 : 0) : 0;
        if (m_left[at] > 0) {
            for (const FrameKey key : own) {
                ++m_wanted[key];
            }
        }
    }

    void forgetWhenDone(int message)
    {
        if (m_left[static_cast<std::size_t>(message)] > 0) {
            return;
        }
        for (const FrameKey key : m_source.keys(message)) {
            if (--m_wanted[key] == 0) {
                m_wanted.remove(key);
            }
        }
    }

    const BusFrameStore &m_store;
    const DatabaseSignals &m_source;
    std::vector<bool> m_isSeen;    ///< by message: one of its frames was looked at
    std::vector<int> m_left;       ///< by message: what is not found yet
    QHash<FrameKey, int> m_wanted; ///< messages that are looked for further back
};

LastSignals::LastSignals(const BusFrameStore &store, std::function<void()> hasMore)
    : m_store(store)
    , m_hasMore(std::move(hasMore))
    , m_stop(std::make_shared<std::atomic<bool>>(false))
    , m_thread(1)
{
}

LastSignals::~LastSignals()
{
    *m_stop = true;
}

void LastSignals::publish(const Rows &rows, const Stop &stop)
{
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        if (*stop) {
            return;
        }
        m_found = rows;
    }
    m_hasMore();
}

LastSignals::Rows LastSignals::take()
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    return m_found;
}

void LastSignals::find(std::shared_ptr<const DatabaseSignals> source, qint64 row,
                       const std::vector<Overview::LastRows> &lastRows)
{
    *m_stop = true;
    m_stop = std::make_shared<std::atomic<bool>>(false);
    std::vector<qint64> newest;
    for (const Overview::LastRows &rows : lastRows) {
        if (rows.last >= 0) {
            newest.push_back(rows.last);
        }
    }
    m_thread.start([this, stop = m_stop, source = std::move(source), row, newest = std::move(newest)]() mutable {
        if (*stop) {
            return;
        }
        const Rows before = take();
        const bool isBefore = before.isComplete && before.source == source && before.row <= row;
        Search search(m_store, std::move(source), row);
        search.lookAtNewest(std::move(newest));
        const bool isDone = search.lookBack(isBefore ? before.row : -1, [&](qint64 at) {
            if (row - at >= PartialRows && row - at < PartialRows + StopRows) {
                publish(search.rows, stop);
            }
            return stop->load();
        });
        if (isDone) {
            if (isBefore) {
                search.takeFrom(before);
            }
            search.rows.isComplete = true;
            publish(search.rows, stop);
        }
    });
}
