#pragma once

#include <cstdint>
#include <optional>
#include <stdexcept>
#include <string>

namespace jet {

// What went wrong, for callers that react to the kind and not to the text.
enum class Fault {
    NotFound, // the file does not exist
    Exists,   // a file, table, column or index of that name is there already
    Io,       // the operating system refused a read, write or sync
    DiskFull,
    Permission,
    Locked,   // another process has the file open
    ReadOnly, // a change was asked of a database opened for reading
    NotADatabase,
    UnsupportedVersion, // a Jet 3 or ACE file, or another format
    PasswordProtected,
    Damaged,     // the file contradicts itself
    UnknownName, // a table, column, index or function that does not exist
    Syntax,      // the SQL text cannot be parsed
    Type,        // a value that cannot become the column's type
    Overflow,    // a number or text too large for its column
    NullValue,   // NULL in a required column or key
    Duplicate,   // a unique index has the key already
    Limit,       // a limit of the file format: columns, row length, file size
    Unsupported, // legal in the format, but not written by this engine
};

// The one exception of the engine. what() is a Russian clause fit to follow "Ошибка: ";
// it names the table and page where they are known.
class Error : public std::runtime_error
{
public:
    Error(Fault fault, const std::string& clause);
    Error(Fault fault, const std::string& clause, std::uint32_t page);
    Error(Fault fault, const std::string& clause, std::string table);
    Error(Fault fault, const std::string& clause, std::uint32_t page, std::string table);

    Fault fault() const noexcept { return m_fault; }
    std::optional<std::uint32_t> page() const noexcept { return m_page; }
    const std::string& table() const noexcept { return m_table; }

private:
    Fault m_fault;
    std::optional<std::uint32_t> m_page;
    std::string m_table;
};

} // namespace jet
