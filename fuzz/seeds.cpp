#include "fuzz/bases.h"
#include "fuzz/damage.h"
#include "jet/sql/functionnames.h"
#include "jet/storage/types.h"

#include <filesystem>
#include <fstream>
#include <iostream>
#include <string>
#include <vector>

// Writes inputs to start from: fuzz_seeds FOLDER makes FOLDER/read, change, compact and sql.

namespace jet::fuzz {

namespace {

class Folder
{
public:
    explicit Folder(std::filesystem::path path)
        : m_path(std::move(path))
    {
        std::filesystem::create_directories(m_path);
    }
    void add(const Bytes& input) { add(std::string(input.begin(), input.end())); }
    void add(const std::string& input)
    {
        std::ofstream out(m_path / ("seed" + std::to_string(m_count++)), std::ios::binary);
        out << input;
        if (!out.flush())
            throw std::runtime_error("cannot write to " + m_path.string());
    }

private:
    std::filesystem::path m_path;
    int m_count = 0;
};

// One damage in the header of each page, and pages gone.
std::vector<Damage> someDamage()
{
    std::vector<Damage> all;
    for (std::uint8_t base = 0; base < bases().size(); ++base) {
        all.push_back({base, {}});
        const std::size_t pages = bases()[base].pages.size() / bases()[base].pageSize;
        for (std::size_t page = 0; page < pages; ++page) {
            Patch patch;
            patch.page = static_cast<std::uint8_t>(page);
            patch.offset = static_cast<std::uint16_t>(4 + page % 16);
            patch.bytes = {0xFF};
            all.push_back({base, {patch}});
        }
        Patch cut;
        cut.kind = Patch::Kind::Resize;
        cut.page = static_cast<std::uint8_t>(pages - 3);
        all.push_back({base, {cut}});
    }
    return all;
}

void writeReadSeeds(Folder folder)
{
    for (const Damage& damage : someDamage())
        folder.add(encodeDamage(damage));
    const ByteView empty(bases()[2].pages);
    Bytes raw = {Damage::kRawFile};
    raw.insert(raw.end(), empty.begin(), empty.begin() + kPageSize);
    folder.add(raw);
}

void writeChangeSeeds(Folder folder)
{
    constexpr int kActions = 14;
    std::uint8_t number = 0;
    for (const Damage& damage : someDamage()) {
        Bytes input = encodeDamage(damage);
        for (int i = 0; i < 4; ++i, ++number) {
            input.push_back(static_cast<std::uint8_t>((number + number / kActions) % kActions));
            input.push_back(static_cast<std::uint8_t>(i));
            input.push_back(static_cast<std::uint8_t>(number / 4));
            input.push_back(number);
        }
        folder.add(input);
    }
}

std::string callOf(const sql::FunctionName& function, int arguments, std::size_t first)
{
    static const std::vector<std::string> kValues = {
        "FAM", "ID", "#9/1/2022 12:30#", "-2.5", "\"yyyy\"", "Null", "2", "\"1,5 ю\"",
    };
    std::string call(function.name);
    call += '(';
    for (int i = 0; i < arguments; ++i)
        call +=
            (i == 0 ? "" : ", ") + kValues[(first + static_cast<std::size_t>(i)) % kValues.size()];
    return call + ')';
}

void writeSqlSeeds(Folder folder, const std::filesystem::path& statements)
{
    std::ifstream file(statements);
    for (std::string line; std::getline(file, line);)
        folder.add(line);
    std::size_t first = 0;
    for (const sql::FunctionName& function : sql::functions()) {
        for (int count = function.minimum; count <= function.maximum; ++count)
            folder.add("SELECT " + callOf(function, count, first++) + " FROM SPSTUD");
    }
}

} // namespace

} // namespace jet::fuzz

int main(int argc, char** argv)
try {
    if (argc != 2) {
        std::cerr << "usage: fuzz_seeds FOLDER\n";
        return 2;
    }
    const std::filesystem::path folder = argv[1];
    jet::fuzz::writeReadSeeds(jet::fuzz::Folder(folder / "read"));
    jet::fuzz::writeReadSeeds(jet::fuzz::Folder(folder / "compact"));
    jet::fuzz::writeChangeSeeds(jet::fuzz::Folder(folder / "change"));
    jet::fuzz::writeSqlSeeds(jet::fuzz::Folder(folder / "sql"), JURNAL_FUZZ_STATEMENTS);
    return 0;
} catch (const std::exception& error) {
    std::cerr << error.what() << '\n';
    return 1;
}
