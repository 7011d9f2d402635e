#include "jet/storage/treepages.h"

namespace jet {

TreePages::TreePages(Pager& pager, PageAllocator& allocator, PageNumber definitionPage,
                     RowPointer pageMap, PageNumber root)
    : m_pager(pager)
    , m_allocator(allocator)
    , m_owner(definitionPage)
    , m_pageMap(pageMap)
    , m_root(root)
{}

PageRef TreePages::load(PageNumber number, IndexPage& view) const
{
    PageRef page = m_pager.read(number);
    view.load(page.bytes(), number, m_owner);
    return page;
}

void TreePages::write(PageNumber number, const IndexPageImage& image)
{
    writeIndexPage(m_pager.modify(number), m_owner, image);
}

void TreePages::link(PageNumber number, std::size_t offset, PageNumber target)
{
    if (number == 0)
        return;
    checkIndexPage(m_pager.read(number).bytes(), number, m_owner);
    put32(m_pager.modify(number), offset, target);
}

PageNumber TreePages::allocate()
{
    const PageNumber number = m_allocator.allocate();
    UsageMap(m_pager, m_allocator, m_pageMap).add(number);
    return number;
}

void TreePages::release(PageNumber number)
{
    const PageType type = m_pager.read(number).type();
    UsageMap(m_pager, m_allocator, m_pageMap).remove(number);
    m_allocator.release(number, type);
}

void TreePages::releaseAll()
{
    for (const PageNumber number : UsageMap(m_pager, m_allocator, m_pageMap).pages()) {
        if (number == m_root)
            continue;
        checkIndexPage(m_pager.read(number).bytes(), number, m_owner);
        release(number);
    }
    write(m_root, {});
}

} // namespace jet
