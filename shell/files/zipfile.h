#pragma once

#include "shell/files/longwork.h"

#include <QString>

namespace shell {

// Archives of one file each. All throw jet::Error and leave nothing half-made behind.

// Writes `source` under the name `entry` into a new archive, waits until it is on the medium, reads
// it back and compares. An encoded database is stored as it is: it cannot be made smaller. False
// when cancelled.
bool writeZip(const QString& source, const QString& entry, const QString& zip,
              const Progress& progress = {});

// Writes the file in the archive to `target`, which must not exist, and checks its sum.
void extractZip(const QString& zip, const QString& target);

// The size of the file in the archive.
qint64 unpackedBytes(const QString& zip);

} // namespace shell
