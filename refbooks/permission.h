#pragma once

namespace shell {
class Prompt;
class Session;
} // namespace shell

namespace refbooks {

// Whether who is signed in may change rows of the books; a refusal is told. The users book
// besides has rules of its own.
bool mayChangeBooks(const shell::Session& session, shell::Prompt& prompt);

} // namespace refbooks
