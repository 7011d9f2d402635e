#pragma once

#include "shell/access/rights.h"

#include <QString>

#include <cstdint>
#include <optional>
#include <vector>

namespace jet {
class Database;
}

namespace shell {

struct SignedIn
{
    std::int64_t id = 1; // USERS.IDU
    QString name = QStringLiteral("Администратор");
    Role role = Role::Administrator;
};

// A row of USERS.
struct UserRecord
{
    SignedIn user;
    QString password; // "" = none
};

// Who may sign in to a journal, in the order of the names.
class Users final
{
public:
    // Throws jet::Error.
    static Users of(jet::Database& database);
    explicit Users(std::vector<UserRecord> rows)
        : m_rows(std::move(rows))
    {}

    const std::vector<UserRecord>& rows() const { return m_rows; }

    // Who works without being asked: nobody has a password, so that asking would protect
    // nothing. An administrator of the file, or the built-in one of a file that has none:
    // nobody is ever locked out of a journal that was not locked.
    std::optional<SignedIn> withoutAsking() const;

    // The row to offer first: that of the name, else the first administrator's, else the first.
    int offered(const QString& name) const;

    // Null when the password is wrong. Passwords are compared as they are written.
    std::optional<SignedIn> signIn(int row, const QString& password) const;

private:
    std::optional<SignedIn> administrator() const;

    std::vector<UserRecord> m_rows;
};

} // namespace shell
