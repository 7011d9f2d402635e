#pragma once

#include "refbooks/catalogue.h"

namespace shell {
class Prompt;
class Session;
} // namespace shell

namespace refbooks {

// Whether who is signed in may change rows of the books; a refusal is told. The users book
// besides has rules of its own.
bool mayChangeBooks(const shell::Session& session, shell::Prompt& prompt);
// The same for one book: only an administrator changes the users.
bool mayChangeBook(Book book, const shell::Session& session, shell::Prompt& prompt);

} // namespace refbooks
