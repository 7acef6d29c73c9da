// SPDX-License-Identifier: MIT
#include "OrderedThreads.h"

#include <algorithm>
#include <condition_variable>
#include <deque>
#include <exception>
#include <map>
#include <mutex>
#include <system_error>
#include <thread>
#include <utility>
#include <vector>

namespace routermsg {

namespace {

struct AllEnds
{
};

// Work that has begun and is not told to its end.
struct Piece
{
    std::deque<Telling> untold;
    bool isOver = false;
};

class OrderedWork
{
public:
    OrderedWork(int count, int threads, const NumberedWork& work)
        : m_count(count), m_ahead(threads * piecesAhead), m_work(work)
    {}
    OrderedWork(const OrderedWork&) = delete;
    OrderedWork& operator=(const OrderedWork&) = delete;

    ~OrderedWork()
    {
        {
            const std::lock_guard lock(m_mutex);
            m_isEnding = true;
            m_changed.notify_all();
        }
        for (std::thread& thread : m_threads)
            thread.join();
    }

    void start(int threads)
    {
        m_threads.reserve(static_cast<size_t>(threads));
        for (int i = 0; i < threads; ++i) {
            try {
                m_threads.emplace_back([this] { doPieces(); });
            } catch (const std::system_error&) {
                // Fewer do the same.
                if (m_threads.empty())
                    throw;
                return;
            }
        }
    }

    void tellAll()
    {
        for (; m_told < m_count; next())
            while (const Telling telling = nextTelling())
                telling();
    }

private:
    static constexpr int piecesAhead = 16;
    static constexpr size_t mostUntold = 1000;

    void next()
    {
        const std::lock_guard lock(m_mutex);
        m_pieces.erase(m_told++);
        m_changed.notify_all();
    }

    // None at the end of the piece.
    Telling nextTelling()
    {
        std::unique_lock lock(m_mutex);
        Piece& piece = m_pieces[m_told];
        m_changed.wait(lock, [&] { return piece.isOver || !piece.untold.empty(); });
        if (piece.untold.empty())
            return nullptr;
        Telling telling = std::move(piece.untold.front());
        piece.untold.pop_front();
        m_changed.notify_all();
        return telling;
    }

    void doPieces()
    {
        for (int number = take(); number < m_count; number = take()) {
            Telling last;
            try {
                m_work(number, [this, number](Telling telling) { tell(number, std::move(telling)); });
            } catch (const AllEnds&) {
                return;
            } catch (...) {
                last = [error = std::current_exception()] { std::rethrow_exception(error); };
            }
            end(number, std::move(last));
        }
    }

    // The number of the next piece, or behind the last one when nothing is to be begun any more.
    int take()
    {
        std::unique_lock lock(m_mutex);
        m_changed.wait(lock,
                       [this] { return m_isEnding || m_begun >= m_count || m_begun < m_told + m_ahead; });
        return m_isEnding ? m_count : std::min(m_begun++, m_count);
    }

    void tell(int number, Telling telling)
    {
        std::unique_lock lock(m_mutex);
        Piece& piece = m_pieces[number];
        m_changed.wait(lock, [&] { return m_isEnding || piece.untold.size() < mostUntold; });
        if (m_isEnding)
            throw AllEnds();
        piece.untold.push_back(std::move(telling));
        m_changed.notify_all();
    }

    void end(int number, Telling last)
    {
        const std::lock_guard lock(m_mutex);
        Piece& piece = m_pieces[number];
        if (last)
            piece.untold.push_back(std::move(last));
        piece.isOver = true;
        m_changed.notify_all();
    }

    const int m_count;
    // How many pieces may have begun from the one that is told.
    const int m_ahead;
    const NumberedWork& m_work;
    std::mutex m_mutex;
    std::condition_variable m_changed;
    std::map<int, Piece> m_pieces;
    int m_begun = 0;
    int m_told = 0;
    bool m_isEnding = false;
    std::vector<std::thread> m_threads;
};

} // namespace

void doInOrder(int count, int threads, const NumberedWork& work)
{
    const int used = std::min(count, threads);
    OrderedWork ordered(count, used, work);
    ordered.start(used);
    ordered.tellAll();
}

} // namespace routermsg
