#pragma once

#include "fuzz/input.h"
#include "jet/database.h"
#include "tests/support/memoryfiles.h"

#include <memory>
#include <string>
#include <vector>

namespace jet::fuzz {

// Runs a script of changes on the file kFile. Each step is four bytes: action, table, and two
// that choose row, column or values. An action that ends with an Error does not end the script.
// One of the actions makes the system fail soon; it then works again after a power cut.
class Changes
{
public:
    // Throws Error where the file cannot be opened.
    explicit Changes(test::MemoryFiles& files);
    ~Changes();
    Changes(const Changes&) = delete;
    Changes& operator=(const Changes&) = delete;

    void run(Input& input);

private:
    struct Step
    {
        std::uint8_t action, table, first, second;
    };
    void act(const Step& step);
    std::string tableOf(const Step& step);
    void insert(const Step& step);
    void update(const Step& step);
    void erase(const Step& step);
    void runStatement(const Step& step);
    void createTable(const Step& step);
    void dropTable(const Step& step);
    void appendField(const Step& step);
    void dropField(const Step& step);
    void createIndex(const Step& step);
    void dropIndex(const Step& step);
    void begin(const Step& step);
    void end(const Step& step);
    void reopen(const Step& step);
    void failSoon(const Step& step);
    void closeTransaction(bool commit);

    test::MemoryFiles& m_files;
    std::unique_ptr<Database> m_database;
    std::vector<std::unique_ptr<Transaction>> m_transactions; // the innermost last
};

} // namespace jet::fuzz
