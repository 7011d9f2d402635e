#pragma once

#include "data/journal.h"

#include <QString>

#include <memory>

namespace shell {

// Opens the state of a journal that another program is working in, for reading: a private
// copy, since the file itself may change at any moment. path() of the journal gives `path`.
// Null when it was refused; `messages` then said why.
std::unique_ptr<data::Journal> openSnapshot(const QString& path, data::Messages& messages);

} // namespace shell
