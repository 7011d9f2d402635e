#pragma once

#include "jet/storage/pager.h"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <vector>

namespace jet {

// Frames of one file by page number. Clean frames beyond the limit give way, the longest
// unused first; dirty and pinned ones stay.
class PageCache
{
public:
    explicit PageCache(std::size_t limit)
        : m_limit(limit)
        , m_evictAt(limit)
    {}

    PageNumber pageCount() const { return static_cast<PageNumber>(m_table.size()); }
    // Growing adds pages without frames; shrinking drops the frames of the pages cut off.
    void setPageCount(PageNumber count);

    // The frame of a page in the cache, else null. Requires number < pageCount().
    Frame* find(PageNumber number)
    {
        Frame* const frame = m_table[number];
        if (frame)
            frame->lastUse = ++m_clock;
        return frame;
    }
    // A frame for a page that has none; its bytes are undefined. May drop other frames.
    Frame* add(PageNumber number);
    void drop(PageNumber number);
    // Gives memory back after a transaction that needed more than the limit.
    void trim();
    std::size_t frameCount() const { return m_frames.size(); }

private:
    void evict(std::size_t wanted);
    Frame* reusable();

    std::size_t m_limit;
    std::size_t m_evictAt; // frames at which add() looks for unused ones
    std::uint64_t m_clock = 0;
    std::vector<Frame*> m_table;                  // by page number
    std::vector<std::unique_ptr<Frame>> m_frames; // all, in no order
    std::vector<Frame*> m_unused;                 // of m_frames: belong to no page
    std::vector<Frame*> m_orphans;                // the same, but still pinned by someone
};

} // namespace jet
