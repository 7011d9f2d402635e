#pragma once

#include "data/settingsrow.h"
#include "jet/database.h"

#include <QString>

#include <memory>

namespace data {

class Messages;

// The open journal file: verified against the schema, brought up to date and stamped.
class Journal
{
public:
    // Opens `path` (or creates it, which refuses an existing path), checks and upgrades it.
    // Null when the file was refused; `messages` then said why, an existing file is unchanged
    // to the byte and a file to be created does not exist. Throws nothing.
    static std::unique_ptr<Journal> openAndCheck(const QString& path, bool create,
                                                 Messages& messages);
    // Opens `path` for reading: nothing is upgraded or stamped, so a file that an earlier
    // release wrote last is refused. Null and messages as above. Throws nothing.
    static std::unique_ptr<Journal> openReadOnly(const QString& path, Messages& messages);
    // openAndCheck() over another file layer, for tests that make it fail.
    static std::unique_ptr<Journal> openAndCheck(jet::FileSystem& files, const QString& path,
                                                 bool create, Messages& messages);

    jet::Database& database() { return *m_database; }
    QString path() const;

    // The settings row as stored now. Throws jet::Error.
    SettingsRow settings() { return readSettingsRow(*m_database); }

private:
    explicit Journal(std::unique_ptr<jet::Database> database);
    static std::unique_ptr<Journal> wrapped(std::unique_ptr<jet::Database> database);

    std::unique_ptr<jet::Database> m_database;
};

} // namespace data
