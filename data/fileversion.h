#pragma once

#include <compare>
#include <cstdint>
#include <optional>

namespace jet {
class Database;
}

namespace data {

// A release of the program, as the settings row names the one that last wrote the file.
struct Version
{
    std::int64_t major = 0;
    std::int64_t minor = 0;
    std::int64_t revision = 0;

    // Releases compare by this number.
    std::int64_t number() const { return major * 1'000'000 + minor * 1'000 + revision; }
    friend bool operator==(const Version&, const Version&) = default;
};

Version programVersion();

// Empty fields and fields that do not exist count as 0. Nothing when the file has no settings
// row at all. Throws jet::Error, also where there is no table of settings.
std::optional<Version> fileVersion(jet::Database& database);
// Stamps the file with the program's version; writes nothing when it has that stamp.
void stampFile(jet::Database& database);

} // namespace data
