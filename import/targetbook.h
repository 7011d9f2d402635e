#pragma once

#include "import/rowsink.h"

#include <map>
#include <optional>
#include <unordered_map>

namespace imports {

struct MatchedField
{
    std::string_view name;
    bool isText; // else a number, of which NULL counts as 0
};

// A reference book of the journal: how its rows are matched and what is taken over.
struct BookLayout
{
    std::string_view table;
    std::string_view key;
    std::vector<MatchedField> matched;     // stored when a row is added
    std::vector<std::string_view> carried; // stored then, and brought up to date later
};

// What became of the rows that the timetable names.
struct RowCounts
{
    std::int64_t added = 0;
    std::int64_t updated = 0;
    std::int64_t unchanged = 0;

    friend bool operator==(const RowCounts&, const RowCounts&) = default;
};

// The rows of one book of the journal by what they are matched on, texts without case as the
// file compares them. Of several rows that match, the first counts. Texts that are too long for
// their field are cut before anything else.
class TargetBook
{
public:
    using Matched = std::vector<jet::Value>;
    // Nothing stands for what the timetable does not tell: it stays as it is.
    using Carried = std::vector<std::optional<jet::Value>>;

    // Reads the book. Throws jet::Error.
    TargetBook(jet::Database& database, const BookLayout& layout, RowSink& sink);

    // The key of the row, which is added when there is none. Throws jet::Error.
    std::int64_t take(Matched matched, const Carried& carried);
    std::optional<std::int64_t> find(Matched matched) const;
    // Carries another value into a row taken before.
    void set(std::int64_t key, std::size_t carried, const jet::Value& value);
    // Stores what differs. To be called once, at the end. Throws jet::Error.
    RowCounts finish();

    std::int64_t shortened() const { return m_shortened; } // texts cut

private:
    struct Row
    {
        std::int64_t key;
        bool isAdded;
        bool isTaken;
        std::vector<jet::Value> stored; // carried fields
        std::vector<jet::Value> wanted;
    };

    void read(jet::Database& database);
    std::string naturalKey(const Matched& matched) const;
    // False when the text had to be cut.
    bool fit(jet::Value& value, std::string_view field) const;
    void fitMatched(Matched& matched) const;
    void carry(Row& row, std::size_t field, jet::Value value);
    std::size_t addRow(const Matched& matched, const Carried& carried);

    BookLayout m_layout;
    RowSink& m_sink;
    std::vector<std::string> m_fields;                       // of a new row
    std::map<std::string, std::size_t, std::less<>> m_sizes; // of text fields, in characters
    std::vector<Row> m_rows;
    std::unordered_map<std::string, std::size_t> m_byName;
    std::unordered_map<std::int64_t, std::size_t> m_byKey;
    std::int64_t m_shortened = 0;
};

} // namespace imports
