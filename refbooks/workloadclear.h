#pragma once

namespace shell {
class Prompt;
class Session;
} // namespace shell

namespace refbooks {

// Deletes all workload of all teachers and groups after three questions, unless lessons or
// grades were recorded. True when it is gone: the list is then to be filled anew. Throws
// jet::Error. Requires an open session.
bool deleteAllWorkload(shell::Session& session, shell::Prompt& prompt);

} // namespace refbooks
