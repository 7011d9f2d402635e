#pragma once

#include "jet/storage/check/rows.h"
#include "jet/storage/check/space.h"
#include "jet/storage/check/tree.h"
#include "jet/storage/sortkey.h"

#include <cstddef>
#include <map>
#include <set>
#include <string>
#include <vector>

namespace jet::check {

// Compares the entries of one real index with the rows of its table.
class Index
{
public:
    // The definition must outlive this.
    Index(Space& space, Findings& findings, const std::string& table, const Definition& definition,
          std::size_t real);

    // Notes the entry that a row must have.
    void expect(const CheckedRow& row);
    // Reads the index. Requires that all rows were expected.
    void run();

private:
    Bytes entryOf(const CheckedRow& row, TwoLetterCount twoLetters) const;
    bool hasTwoLetterCharacter(const CheckedRow& row) const;
    void checkPages(const Tree& tree);
    void checkOrder(const Tree& tree);
    void compare(const Tree& tree);
    void checkUnknownRows(const Tree& tree);

    Space& m_space;
    Findings& m_findings;
    const Definition& m_definition;
    const RealIndex& m_index;
    std::vector<std::size_t> m_columns; // positions in the definition
    Owner m_owner;
    bool m_unique = false;
    bool m_required = false;
    std::vector<Bytes> m_expected;
    // Other bytes that the entry of a text with two-letter characters may have.
    std::map<Bytes, Bytes> m_alternatives; // -> the one in m_expected
    std::set<RowPointer> m_unknown;        // rows whose key cannot be computed
};

} // namespace jet::check
