#pragma once

#include "jet/sql/errorslot.h"
#include "jet/sql/translation.h"
#include "journalschema.h"

#include <memory>
#include <string>
#include <string_view>
#include <vector>

struct sqlite3;

// The journal's tables as plain tables of an in-memory SQLite database with Jet's functions,
// to run translated statements on.
class JournalConnection
{
public:
    explicit JournalConnection(JournalSchema tables = {});

    JournalSchema schema;

    jet::sql::Translation translate(std::string_view jetSql);
    // "" when SQLite accepts the text, what it says otherwise.
    std::string prepareError(const std::string& sqlite);
    // Runs a Jet SQL statement. Rows as "a|b|c", NULL as "-", REAL with its point.
    std::vector<std::string> rows(std::string_view jetSql);
    // The one value of `SELECT expression`.
    std::string value(const std::string& expression);
    double number(const std::string& expression);

private:
    std::unique_ptr<sqlite3, int (*)(sqlite3*)> m_connection;
    jet::sql::ErrorSlot m_errors;
};
