#include "jet/storage/treechange.h"

#include "jet/error.h"

#include <algorithm>
#include <cstdint>
#include <span>

namespace jet {
namespace {

// Two halves of an overfull page. Leaves: the separator is the left half's last key. Nodes:
// it is the key of the left half's rightmost child, which no longer stands in the node.
struct Halves
{
    IndexPageImage left;
    IndexPageImage right;
    Bytes separator;
};

std::ptrdiff_t offset(std::size_t i)
{
    return static_cast<std::ptrdiff_t>(i);
}

// How many keys the left half gets so that both halves fit and are alike in size. Leaves at
// the right end split off only their new entry; nodes keep one key on the right as well.
std::size_t splitPoint(const IndexPageImage& image, bool atRightEnd)
{
    const std::size_t keys = image.keys.size();
    const std::size_t passedUp = image.isLeaf() ? 0 : 1;
    const PageSizes sizes(image.keys, image.isLeaf());
    if (atRightEnd && keys > 1 + passedUp && sizes.fit(0, keys - 1 - passedUp))
        return keys - 1 - passedUp;
    std::size_t best = passedUp == 0 ? 1 : 0;
    std::size_t fewestBytes = SIZE_MAX;
    for (std::size_t count = 1; count + passedUp < keys; ++count) {
        const std::size_t bytes =
            std::max(sizes.bytes(0, count), sizes.bytes(count + passedUp, keys));
        if (bytes < fewestBytes) {
            fewestBytes = bytes;
            best = count;
        }
    }
    return best;
}

Halves halve(const IndexPageImage& image, bool atRightEnd)
{
    const std::size_t count = splitPoint(image, atRightEnd);
    const bool leaf = image.isLeaf();
    Halves halves;
    halves.left.level = halves.right.level = image.level;
    const auto cut = image.keys.begin() + offset(count);
    halves.left.keys.assign(image.keys.begin(), cut);
    halves.right.keys.assign(leaf ? cut : cut + 1, image.keys.end());
    halves.separator = leaf ? halves.left.keys.back() : *cut;
    if (!leaf) {
        const auto childCut = image.children.begin() + offset(count + 1);
        halves.left.children.assign(image.children.begin(), childCut);
        halves.right.children.assign(childCut, image.children.end());
    }
    return halves;
}

} // namespace

bool TreePath::isRightmost() const
{
    return std::all_of(steps.begin(), steps.begin() + offset(length),
                       [](const Step& step) { return step.rightmost; });
}

TreeChange::TreeChange(TreePages& pages, const TreePath& path, PageNumber leaf)
    : m_pages(pages)
    , m_path(path)
    , m_leaf(leaf)
{}

void TreeChange::storeLeaf(const IndexPageImage& image, bool appended)
{
    store(m_path.length, image, appended);
}

void TreeChange::lastChanged(const Bytes& last)
{
    replaceSeparatorAbove(m_path.length, last);
}

void TreeChange::removeLeaf()
{
    if (m_path.length == 0)
        m_pages.write(m_leaf, {});
    else
        removePage(m_path.length);
}

PageNumber TreeChange::pageAt(std::size_t depth) const
{
    return depth == m_path.length ? m_leaf : m_path.steps[depth].page;
}

std::uint8_t TreeChange::levelAt(std::size_t depth) const
{
    return static_cast<std::uint8_t>(m_path.length - depth);
}

IndexPageImage TreeChange::nodeAt(std::size_t depth) const
{
    IndexPage view;
    const PageRef page = m_pages.load(pageAt(depth), view);
    if (view.isLeaf() || m_path.steps[depth].child > view.separators())
        throw Error(Fault::Damaged, "узлы индекса ссылаются друг на друга", pageAt(depth));
    return takeApart(view, levelAt(depth));
}

void TreeChange::store(std::size_t depth, const IndexPageImage& image, bool appended)
{
    if (PageSizes(image.keys, image.isLeaf()).fit(0, image.keys.size()))
        m_pages.write(pageAt(depth), image);
    else
        split(depth, image, appended);
}

void TreeChange::split(std::size_t depth, const IndexPageImage& image, bool appended)
{
    const auto above = m_path.steps.begin();
    const bool atRightEnd = appended
                            && std::all_of(above, above + offset(depth),
                                           [](const auto& step) { return step.rightmost; });
    Halves halves = halve(image, atRightEnd);
    if (!image.isLeaf() && image.level > 1) { // nodes are linked under one parent only
        m_pages.setNext(halves.left.children.back(), 0);
        m_pages.setPrevious(halves.right.children.front(), 0);
    }
    if (depth == 0) {
        splitRoot(halves.left, halves.right, halves.separator);
        return;
    }
    const PageNumber left = pageAt(depth);
    const PageNumber right = m_pages.allocate();
    halves.left.previous = image.previous;
    halves.left.next = right;
    halves.right.previous = left;
    halves.right.next = image.next;
    m_pages.write(left, halves.left);
    m_pages.write(right, halves.right);
    m_pages.setPrevious(image.next, right);
    addChild(depth - 1, halves.separator, right, appended);
}

void TreeChange::splitRoot(IndexPageImage& left, IndexPageImage& right, const Bytes& separator)
{
    const PageNumber leftPage = m_pages.allocate();
    const PageNumber rightPage = m_pages.allocate();
    left.next = rightPage;
    right.previous = leftPage;
    m_pages.write(leftPage, left);
    m_pages.write(rightPage, right);
    IndexPageImage root;
    root.level = static_cast<std::uint8_t>(left.level + 1);
    root.keys = {separator};
    root.children = {leftPage, rightPage};
    m_pages.write(m_pages.root(), root);
}

// The child on the path keeps what is up to the separator; `right` got the rest, and with it
// the child's old entry or its place as the rightmost one.
void TreeChange::addChild(std::size_t depth, const Bytes& separator, PageNumber right,
                          bool appended)
{
    IndexPageImage node = nodeAt(depth);
    const auto at = offset(m_path.steps[depth].child);
    node.keys.insert(node.keys.begin() + at, separator);
    node.children.insert(node.children.begin() + at + 1, right);
    store(depth, node, appended);
}

void TreeChange::replaceSeparatorAbove(std::size_t depth, const Bytes& last)
{
    while (depth > 0 && m_path.steps[depth - 1].rightmost)
        --depth;
    if (depth == 0)
        return;
    IndexPageImage node = nodeAt(depth - 1);
    Bytes& separator = node.keys[m_path.steps[depth - 1].child];
    if (separator == last)
        return;
    separator = last;
    store(depth - 1, node, false);
}

void TreeChange::removePage(std::size_t depth)
{
    const PageNumber page = pageAt(depth);
    IndexPage view;
    {
        const PageRef pinned = m_pages.load(page, view);
        m_pages.setNext(view.previous(), view.next());
        m_pages.setPrevious(view.next(), view.previous());
    }
    m_pages.release(page);
    removeChild(depth - 1);
}

void TreeChange::removeChild(std::size_t depth)
{
    IndexPageImage node = nodeAt(depth);
    if (node.keys.empty()) { // it was the only one
        if (depth == 0)
            m_pages.write(m_pages.root(), {});
        else
            removePage(depth);
        return;
    }
    const TreePath::Step& step = m_path.steps[depth];
    const std::size_t key = std::min(step.child, node.keys.size() - 1);
    const Bytes last = node.keys[key]; // of the child that becomes the rightmost one, if any
    node.keys.erase(node.keys.begin() + offset(key));
    node.children.erase(node.children.begin() + offset(step.child));
    store(depth, node, false);
    if (step.rightmost)
        replaceSeparatorAbove(depth, last);
    if (depth == 0)
        collapseRoot();
}

// A root with a single child takes the child's content, so that the tree grows lower again.
void TreeChange::collapseRoot()
{
    for (std::size_t level = 0; level < m_path.length; ++level) {
        IndexPage view;
        const PageRef root = m_pages.load(m_pages.root(), view);
        if (view.isLeaf() || view.separators() > 0)
            return;
        const PageNumber child = view.child(0);
        const std::size_t childLevel = m_path.length - level - 1;
        const PageRef pinned = m_pages.load(child, view);
        if (view.isLeaf() != (childLevel == 0))
            throw Error(Fault::Damaged, "узлы индекса ссылаются друг на друга", child);
        IndexPageImage image = takeApart(view, static_cast<std::uint8_t>(childLevel));
        image.previous = image.next = 0;
        m_pages.write(m_pages.root(), image);
        m_pages.release(child);
    }
}

} // namespace jet
