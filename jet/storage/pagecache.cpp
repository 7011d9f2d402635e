#include "jet/storage/pagecache.h"

#include <algorithm>

namespace jet {

namespace {

constexpr std::size_t kEvictionShare = 8; // one eighth of the limit goes at a time

} // namespace

void PageCache::setPageCount(PageNumber count)
{
    for (PageNumber number = count; number < m_table.size(); ++number)
        drop(number);
    m_table.resize(count, nullptr);
}

Frame* PageCache::add(PageNumber number)
{
    Frame* frame = reusable();
    if (!frame && m_frames.size() >= m_evictAt) {
        evict(std::max<std::size_t>(1, m_limit / kEvictionShare));
        frame = reusable();
        if (!frame) // all dirty or pinned: look again after some more
            m_evictAt = m_frames.size() + std::max<std::size_t>(1, m_limit / kEvictionShare);
    }
    if (!frame) {
        m_frames.push_back(std::make_unique<Frame>());
        frame = m_frames.back().get();
    }
    frame->number = number;
    frame->dirty = false;
    frame->savedFor = 0;
    frame->lastUse = ++m_clock;
    m_table[number] = frame;
    return frame;
}

void PageCache::drop(PageNumber number)
{
    Frame* const frame = m_table[number];
    if (!frame)
        return;
    m_table[number] = nullptr;
    frame->dirty = false;
    (frame->pins == 0 ? m_unused : m_orphans).push_back(frame);
}

void PageCache::trim()
{
    m_evictAt = m_limit;
    if (m_frames.size() <= m_limit)
        return;
    evict(m_frames.size() - m_limit);
    const std::size_t surplus = std::min(m_unused.size(), m_frames.size() - m_limit);
    std::vector<Frame*> gone(m_unused.end() - static_cast<std::ptrdiff_t>(surplus), m_unused.end());
    m_unused.resize(m_unused.size() - surplus);
    std::sort(gone.begin(), gone.end());
    std::erase_if(m_frames, [&gone](const std::unique_ptr<Frame>& frame) {
        return std::binary_search(gone.begin(), gone.end(), frame.get());
    });
}

void PageCache::evict(std::size_t wanted)
{
    std::vector<Frame*> candidates;
    for (Frame* frame : m_table) {
        if (frame && !frame->dirty && frame->pins == 0)
            candidates.push_back(frame);
    }
    wanted = std::min(wanted, candidates.size());
    const auto end = candidates.begin() + static_cast<std::ptrdiff_t>(wanted);
    std::nth_element(candidates.begin(), end, candidates.end(),
                     [](const Frame* a, const Frame* b) { return a->lastUse < b->lastUse; });
    std::for_each(candidates.begin(), end, [this](Frame* frame) { drop(frame->number); });
}

Frame* PageCache::reusable()
{
    const auto freed = std::find_if(m_orphans.begin(), m_orphans.end(),
                                    [](const Frame* frame) { return frame->pins == 0; });
    if (freed != m_orphans.end()) {
        m_unused.push_back(*freed);
        m_orphans.erase(freed);
    }
    if (m_unused.empty())
        return nullptr;
    Frame* const frame = m_unused.back();
    m_unused.pop_back();
    return frame;
}

} // namespace jet
