#pragma once

#include "jet/value.h"

#include <cstdint>
#include <string>

namespace jet {

// Flags of a row of MSysObjects.
namespace objectflag {
inline constexpr std::uint32_t kEngineSystem = 0x80000000;
inline constexpr std::uint32_t kAccessSystem = 2;
inline constexpr std::uint32_t kHidden = 8;
} // namespace objectflag

// A row of MSysObjects.
struct CatalogueObject
{
    std::uint32_t id = 0; // of a table: its definition page
    std::uint32_t parent = 0;
    std::string name;
    int type = 0; // 1 table, 3 container, 4/6 linked table, 5 query, 8 relationship ...
    std::uint32_t flags = 0;
    DateTime created;
    DateTime updated;

    bool isLocalTable() const { return type == 1; }
    bool isSystem() const
    {
        return (flags & (objectflag::kEngineSystem | objectflag::kAccessSystem)) != 0;
    }
    // Local, neither of the engine nor of Access itself.
    bool isUserTable() const { return isLocalTable() && !isSystem(); }
};

} // namespace jet
