#include "jet/storage/check/tree.h"

#include <utility>

namespace jet::check {
namespace {

constexpr std::size_t kMostLevels = 30;

} // namespace

Tree::Tree(Space& space, Findings& findings, Owner owner, PageNumber definitionPage)
    : m_space(space)
    , m_findings(findings)
    , m_owner(std::move(owner))
    , m_definitionPage(definitionPage)
{}

void Tree::harmful(const char* what, PageNumber page)
{
    m_findings.harmful(m_owner.table, m_owner.part + ": " + what, page);
}

void Tree::harmless(const char* what, PageNumber page)
{
    m_findings.harmless(m_owner.table, m_owner.part + ": " + what, page);
}

void Tree::walk(PageNumber root)
{
    visit(root, 0);
    checkLevels();
    checkChain();
}

std::optional<Bytes> Tree::visit(PageNumber number, std::size_t depth)
{
    if (depth > kMostLevels || !m_pages.insert(number).second) {
        harmful("страница достижима двумя путями", number);
        m_complete = false;
        return std::nullopt;
    }
    if (!m_space.claim(number, m_owner)) {
        m_complete = false;
        return std::nullopt;
    }
    std::optional<Bytes> last;
    const bool read = m_findings.attempt(
        m_owner.table,
        [&] {
            const PageRef pinned = m_space.pager().read(number);
            const ByteView bytes = pinned.bytes();
            IndexPage page;
            page.load(bytes, number, m_definitionPage);
            m_visits.push_back(
                {number, depth, bytes[kIndexLevel], page.isLeaf(), page.previous(), page.next()});
            if (get16(bytes, kIndexFree) != kIndexArea - page.used())
                harmful("неверно указано свободное место", number);
            if (page.isLeaf()) {
                last = visitLeaf(page, bytes, depth);
                return;
            }
            if (get32(bytes, kIndexTail) == 0)
                harmless("у узла нет крайней правой страницы", number);
            last = visitChildren(takeApart(page, 1), number, depth);
        },
        number);
    m_complete = m_complete && read;
    return last;
}

std::optional<Bytes> Tree::visitLeaf(const IndexPage& page, ByteView bytes, std::size_t depth)
{
    if (get32(bytes, kIndexTail) != 0)
        harmful("у листа есть вложенная страница", page.number());
    if (page.count() == 0) {
        if (depth > 0)
            harmful("пустой лист", page.number());
        return std::nullopt;
    }
    for (std::size_t i = 0; i < page.count(); ++i) {
        Entry& entry = m_entries.emplace_back();
        entry.leaf = page.number();
        page.key(i, entry.bytes);
    }
    return m_entries.back().bytes;
}

std::optional<Bytes> Tree::visitChildren(const IndexPageImage& node, PageNumber number,
                                         std::size_t depth)
{
    std::optional<Bytes> last;
    for (std::size_t i = 0; i < node.children.size(); ++i) {
        last = visit(node.children[i], depth + 1);
        if (i < node.keys.size() && last != node.keys[i])
            harmful("запись узла не равна последней записи под ней", number);
    }
    m_findings.attempt(m_owner.table, [&] { checkSiblings(node); });
    return last;
}

// Nodes below one parent are linked; readers get along without that.
void Tree::checkSiblings(const IndexPageImage& node)
{
    for (std::size_t i = 0; i + 1 < node.children.size(); ++i) {
        const PageRef left = m_space.pager().read(node.children[i]);
        const PageRef right = m_space.pager().read(node.children[i + 1]);
        if (left.type() != PageType::IndexNode || right.type() != PageType::IndexNode)
            continue;
        if (get32(left.bytes(), kIndexNext) != right.number()
            || get32(right.bytes(), kIndexPrevious) != left.number())
            harmless("соседние узлы не связаны", left.number());
    }
}

void Tree::checkLevels()
{
    std::optional<std::size_t> bottom;
    for (const Visit& visit : m_visits) {
        if (!visit.leaf)
            continue;
        if (visit.depth != bottom.value_or(visit.depth))
            harmful("листья на разной глубине", visit.page);
        bottom = visit.depth;
    }
    for (const Visit& visit : m_visits) {
        const std::size_t level = bottom.value_or(visit.depth) - visit.depth;
        if (visit.level == level)
            continue;
        if (visit.level == 0) // some programs never write it
            harmless("у узла не указан уровень", visit.page);
        else
            harmful("неверный уровень страницы", visit.page);
    }
}

void Tree::checkChain()
{
    const Visit* before = nullptr;
    for (const Visit& visit : m_visits) {
        if (!visit.leaf)
            continue;
        if (visit.previous != (before ? before->page : 0) || (before && before->next != visit.page))
            harmful("листья связаны не по порядку", visit.page);
        before = &visit;
    }
    if (before && before->next != 0)
        harmful("листья связаны не по порядку", before->page);
}

} // namespace jet::check
