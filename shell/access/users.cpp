#include "shell/access/users.h"

#include "data/convert.h"
#include "jet/database.h"

#include <algorithm>

namespace shell {

Users Users::of(jet::Database& database)
{
    std::vector<UserRecord> rows;
    auto record = database.query(
        "SELECT USERS.IDU, USERS.NAIM, USERS.ROLE, USERS.PSSW FROM USERS ORDER BY USERS.NAIM;");
    while (record.next()) {
        // An empty role is the least of them, as in the users book.
        const Role role =
            record.isNull("ROLE") ? Role::User : roleOf(static_cast<int>(record.integer("ROLE")));
        const SignedIn user{record.integer("IDU"), data::fromUtf8(record.text("NAIM")), role};
        rows.push_back({user, data::fromUtf8(record.text("PSSW"))});
    }
    return Users(std::move(rows));
}

std::optional<SignedIn> Users::administrator() const
{
    for (const UserRecord& row : m_rows)
        if (row.user.role == Role::Administrator)
            return row.user;
    return {};
}

std::optional<SignedIn> Users::withoutAsking() const
{
    const auto hasPassword = [](const UserRecord& row) { return !row.password.isEmpty(); };
    if (std::ranges::any_of(m_rows, hasPassword))
        return {};
    return administrator().value_or(SignedIn{});
}

int Users::offered(const QString& name) const
{
    const auto indexWhere = [this](auto matches) {
        const auto found = std::ranges::find_if(m_rows, matches);
        return found == m_rows.end() ? -1 : static_cast<int>(found - m_rows.begin());
    };
    const int named = indexWhere([&](const UserRecord& row) { return row.user.name == name; });
    if (named >= 0)
        return named;
    return std::max(
        0, indexWhere([](const UserRecord& row) { return row.user.role == Role::Administrator; }));
}

std::optional<SignedIn> Users::signIn(int row, const QString& password) const
{
    if (row < 0 || static_cast<std::size_t>(row) >= m_rows.size())
        return {};
    const UserRecord& record = m_rows[static_cast<std::size_t>(row)];
    if (record.password != password)
        return {};
    return record.user;
}

} // namespace shell
