#pragma once

#include "shell/files/longwork.h"

#include <QString>

namespace shell {

// All throw jet::Error. A file of the name `to` is replaced at once when its successor is
// complete and proven, and otherwise stays as it was. Nothing half-made is left behind.

// Copies the bytes, waits until they are on the medium, reads them back and compares. False
// when cancelled. `from` may be an open journal between two statements.
bool copyVerified(const QString& from, const QString& to, const Progress& progress = {});

// Copies without waiting for the medium or reading back, readable by the user alone: for
// copies that must not hold anybody up and are proven later.
void copyQuickly(const QString& from, const QString& to);

// Puts the complete file `part` in the place of `to`, which need not exist.
void moveInPlace(const QString& part, const QString& to);

// Throws Error (DiskFull) when the disk of `folder` has less room than that.
void requireRoom(const QString& folder, qint64 bytes);

// Whether both paths lead to one and the same file, which exists.
bool sameFile(const QString& left, const QString& right);

// Whether both files hold the same bytes; reads from the medium where the system can be told
// to. Nothing is thrown for a file that is too short. False when cancelled, too.
bool sameBytes(const QString& left, const QString& right, const Progress& progress = {});

// The file's name until it is complete.
QString partName(const QString& path);

} // namespace shell
