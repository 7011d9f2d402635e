#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace jet::test {

// Writes files of Access 95/97 (Jet 3) as far as reading them needs: definitions, rows, long
// values, page maps; index trees are left empty. Names and texts are bytes of the code page.
class Jet3File
{
public:
    using Bytes = std::vector<std::uint8_t>;
    // What a row stores in a column, nothing for NULL. Of a Memo or OLE column the data
    // themselves; of a Boolean anything for True.
    using Item = std::optional<Bytes>;
    using Row = std::vector<Item>;

    struct Column
    {
        std::string name;
        std::uint8_t type = 4;
        std::uint16_t length = 4;
        std::uint8_t flags = 3; // 1 fixed, 2 updatable, 4 counter
    };
    struct Index // one real and one logical index
    {
        std::string name;
        std::vector<std::uint16_t> columns;
        std::uint8_t flags = 0; // 1 unique, 2 ignore nulls, 8 required
        std::uint8_t type = 0;  // 1 primary key, 2 foreign key
        std::uint8_t side = 0;  // of a relationship: 1 referenced, 2 referencing
        std::int32_t partner = -1;
        int partnerTable = -1; // position in `tables`
    };
    struct Table
    {
        std::string name;
        std::vector<Column> columns;
        std::vector<Row> rows;
        std::vector<Index> indexes = {};
        std::uint32_t lastCounter = 0;
        Bytes properties = {};
        int deleteEvery = 0; // before each n-th row a deleted one stands
        int moveEvery = 0;   // each n-th row was moved to another page
        bool mapOfMaps = false;
    };
    struct Object
    {
        std::uint32_t id = 0;
        std::uint32_t parent = 0x0F000001;
        std::string name;
        std::int16_t type = 5;
        std::uint32_t flags = 0;
    };

    std::uint16_t codePage = 1251;
    std::uint32_t key = 0;
    std::string password = {};
    std::vector<Table> tables = {};
    std::vector<Object> objects = {}; // beyond tables and containers
    std::vector<Row> queries = {};    // of MSysQueries: see queryColumns()
    std::vector<Row> relationships = {};

    static std::vector<Column> queryColumns();
    static std::vector<Column> relationshipColumns();

    Bytes bytes();

    static Bytes text(const std::string& characters);
    static Bytes number(std::uint64_t value, std::size_t size);
    static Bytes real(double value);

private:
    static constexpr std::size_t kPageSize = 2048;
    using Page = std::array<std::uint8_t, kPageSize>;
    struct Place
    {
        std::uint32_t page = 0;
        std::uint8_t row = 0;
    };

    std::uint32_t addPage(std::uint8_t type, std::uint32_t owner);
    std::optional<Place> addRow(std::uint32_t page, const Bytes& row, unsigned flags);
    Place place(std::vector<std::uint32_t>& pages, std::uint32_t owner, const Bytes& row,
                unsigned flags);
    Bytes longValue(const Bytes& data);
    Bytes encodeRow(const Table& table, const Row& row);
    Bytes map(const std::vector<std::uint32_t>& pages, bool byReference);
    void writeTable(const Table& table, std::uint32_t page);
    Bytes definition(const Table& table, std::uint32_t mapPage) const;
    void writeDefinition(const Bytes& bytes, std::uint32_t page);
    void writeHeader();
    Row objectRow(const Object& object, const Bytes& properties) const;

    std::vector<Page> m_pages;
    std::vector<std::uint32_t> m_tablePages;
    std::vector<std::uint32_t> m_longValuePages;
};

} // namespace jet::test
