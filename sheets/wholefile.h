#pragma once

#include <QString>

#include <functional>

namespace sheets {

// What becomes of a file that is there already.
enum class Existing { Keep, Replace };

// Has `write` make a file beside `path` and gives it that name: the file is there whole or not
// at all. An earlier one is kept unless the caller says that the user agreed to replace it.
// Throws jet::Error, and what `write` throws.
void writeWhole(const QString& path, Existing existing,
                const std::function<void(const QString& draft)>& write);

} // namespace sheets
