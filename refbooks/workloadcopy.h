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
class Wording;
} // namespace shell

namespace refbooks {

enum class CopyTo { Groups, Subgroups };

// What workload can be copied to: a group by its key, or a subgroup by its number.
struct CopyTarget
{
    std::int64_t key = 0;
    QString name;
    friend bool operator==(const CopyTarget&, const CopyTarget&) = default;
};

// What the chooser asks for, before and after something is chosen.
QString copyChoicePrompt(CopyTo to, const shell::Wording& wording);
QString copyConfirmPrompt();

// Copies workload rows to further groups, where the copies stand alone, or to subgroups, where
// they are linked with their source.
class WorkloadCopy
{
public:
    // Requires an open session.
    WorkloadCopy(shell::Session& session, shell::Prompt& prompt, shell::StatusLine& status);

    // What to choose from: all groups by name, or the subgroups 1, 2 and what further ones the
    // students of the rows' groups have. Throws jet::Error.
    std::vector<CopyTarget> targets(CopyTo to, std::span<const std::int64_t> keys);

    // Asks, copies each row to each target and tells how many were made. Gives that number.
    // The copies of one row are one durable step; those of rows before stay when it fails.
    // Throws jet::Error.
    int copy(std::span<const std::int64_t> keys, CopyTo to, std::span<const CopyTarget> targets);

private:
    int copyRow(std::int64_t key, CopyTo to, std::span<const CopyTarget> targets);
    QString question(CopyTo to, std::span<const CopyTarget> targets) const;
    jet::Database& database();

    shell::Session& m_session;
    shell::Prompt& m_prompt;
    shell::StatusLine& m_status;
};

} // namespace refbooks
