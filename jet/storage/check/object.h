#pragma once

#include "jet/storage/catalogueobject.h"
#include "jet/storage/types.h"
#include "jet/value.h"

#include <cstdint>
#include <string>

namespace jet::check {

// A row of MSysObjects as far as the check needs it.
struct Object
{
    std::uint32_t id = 0, parent = 0, flags = 0;
    int type = 0;
    std::string name;
    Bytes owner; // account, decoded
    Bytes properties;
    RowPointer row;

    bool isLocalTable() const { return type == 1; }
    bool isContainer() const { return type == 3; }
    bool isRelationship() const { return type == 8; }
    bool isSystem() const
    {
        return (flags & (objectflag::kEngineSystem | objectflag::kAccessSystem)) != 0;
    }
};

// An account that the engine knows by itself, or one of a workgroup file.
bool isKnownAccount(const Bytes& account);

} // namespace jet::check
