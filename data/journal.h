#pragma once

#include "data/settingsrow.h"
#include "jet/database.h"

#include <QString>

#include <functional>
#include <memory>

namespace jet {
class Error;
}

namespace data {

class Messages;

// What the caller takes part in while an existing file is opened.
struct OpenHooks
{
    // Called before anything is changed in a file that an earlier release wrote or that lacks
    // something, while it still is as it was. What it throws refuses the file.
    std::function<void()> beforeUpgrade = {};
    // Offered each failure of the engine; true when the user need not be told any more.
    std::function<bool(const jet::Error& error)> failed = {};
};

// The open journal file: verified against the schema, brought up to date and stamped.
class Journal
{
public:
    // Opens `path` (or creates it, which refuses an existing path), checks and upgrades it.
    // Null when the file was refused; `messages` then said why, an existing file is unchanged
    // to the byte and a file to be created does not exist. Throws nothing.
    static std::unique_ptr<Journal> openAndCheck(const QString& path, bool create,
                                                 Messages& messages, const OpenHooks& hooks = {});
    // Opens `path` for reading: nothing is upgraded or stamped, so a file that an earlier
    // release wrote last is refused. Null and messages as above. Throws nothing.
    static std::unique_ptr<Journal> openReadOnly(const QString& path, Messages& messages,
                                                 const OpenHooks& hooks = {});
    // openAndCheck() over another file layer, for tests that make it fail.
    static std::unique_ptr<Journal> openAndCheck(jet::FileSystem& files, const QString& path,
                                                 bool create, Messages& messages,
                                                 const OpenHooks& hooks = {});

    // The open file is a copy of the one at `path`, which path() gives from now on; `keep`
    // owns the copy and is let go after the file has been closed.
    void standFor(const QString& path, std::shared_ptr<void> keep);

    jet::Database& database() { return *m_database; }
    // The file as the user knows it.
    QString path() const;
    // The file that is open, which differs from path() only for a copy that stands for it.
    QString filePath() const;
    // Whether another program holds the file for changing, and a copy stands for it.
    bool isSnapshot() const { return !m_standsFor.isEmpty(); }

    // The settings row as stored now. Throws jet::Error.
    SettingsRow settings() { return readSettingsRow(*m_database); }

private:
    explicit Journal(std::unique_ptr<jet::Database> database);
    static std::unique_ptr<Journal> wrapped(std::unique_ptr<jet::Database> database);

    std::shared_ptr<void> m_keep; // outlives the open file
    QString m_standsFor;          // "" when it stands for itself
    std::unique_ptr<jet::Database> m_database;
};

} // namespace data
