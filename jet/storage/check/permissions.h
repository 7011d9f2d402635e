#pragma once

#include "jet/storage/check/findings.h"
#include "jet/storage/check/object.h"

#include <cstdint>
#include <map>
#include <vector>

namespace jet::check {

// A row of MSysACEs: what an account may do with an object.
struct Permission
{
    std::uint32_t object = 0;
    std::uint32_t rights = 0;
    Bytes account; // decoded
    bool inheritable = false;
    RowPointer row;
};

// Compares the rows of MSysACEs with the objects of the catalogue.
class Permissions
{
public:
    explicit Permissions(Findings& findings)
        : m_findings(findings)
    {}

    void add(Permission permission);
    // Requires that all permissions were added.
    void check(const std::vector<Object>& objects);

private:
    using Rights = std::map<Bytes, std::uint32_t>; // by account

    void checkEach(const std::map<std::uint32_t, const Object*>& objects);
    void checkTable(const Object& table);
    Rights inherited(const Object& table) const;

    Findings& m_findings;
    std::map<std::uint32_t, std::vector<Permission>> m_permissions; // by object
};

} // namespace jet::check
