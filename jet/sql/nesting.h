#pragma once

#include "jet/sql/parser.h"

#include "jet/error.h"

namespace jet::sql {

// Levels of brackets, calls and sub-queries, needless brackets included.
inline constexpr int kMaxNesting = 30;
// Operators in a row count too: `a OR b OR c` is a tree of depth 3. SQLite allows 1000.
inline constexpr int kMaxDepth = 500;

// Counts one level for as long as it lives.
class Parser::Nested
{
public:
    explicit Nested(Parser& parser)
        : m_parser(parser)
    {
        if (++m_parser.m_nesting > kMaxNesting) {
            --m_parser.m_nesting;
            throw Error(Fault::Limit, "слишком много вложенных скобок в запросе");
        }
    }
    Nested(const Nested&) = delete;
    Nested& operator=(const Nested&) = delete;
    ~Nested() { --m_parser.m_nesting; }

private:
    Parser& m_parser;
};

} // namespace jet::sql
