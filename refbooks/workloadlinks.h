#pragma once

#include <QString>

#include <cstdint>
#include <span>
#include <vector>

namespace jet {
class Database;
}
namespace shell {
class Prompt;
class Session;
class StatusLine;
} // namespace shell

namespace refbooks {

// Workload rows whose lessons are held together, in one room at one time, carry the same link
// number, the key of one of them; a row outside any link carries 0 or nothing. A link has at
// least two rows.
class WorkloadLinks
{
public:
    // Requires an open session.
    WorkloadLinks(shell::Session& session, shell::Prompt& prompt, shell::StatusLine& status);

    // Takes the selected rows apart when all belong to one link, and links them otherwise; asks
    // and tells as it goes. True when rows changed: the list is then to be filled anew. Throws
    // jet::Error.
    bool linkOrUnlink(std::span<const std::int64_t> keys);

private:
    struct Row
    {
        std::int64_t key = 0;
        std::int64_t link = 0; // 0 = outside any link
    };
    struct Selection
    {
        std::vector<Row> rows;
        std::int64_t link = 0; // the first one met
        bool severalLinks = false;
        std::size_t linked = 0; // how many rows are
    };

    Selection readSelection(std::span<const std::int64_t> keys);
    bool unlink(const Selection& selection);
    bool link(const Selection& selection);
    QString unlinkQuestion(const Selection& selection);
    bool goOnWithLessons(const Selection& selection, bool linking);
    bool sameParameters(const Selection& selection);
    std::int64_t freeLinkNumber(const Selection& selection);
    bool cancelled();
    jet::Database& database();

    shell::Session& m_session;
    shell::Prompt& m_prompt;
    shell::StatusLine& m_status;
};

// The rows of a link. Throws jet::Error.
std::int64_t linkSize(jet::Database& database, std::int64_t link);
// Ends a link that is left with one row. True when it did. Throws jet::Error.
bool releaseLastRow(jet::Database& database, std::int64_t link);

} // namespace refbooks
