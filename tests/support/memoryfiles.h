#pragma once

#include "jet/error.h"
#include "jet/storage/file.h"

#include <cstdint>
#include <filesystem>
#include <map>
#include <memory>
#include <random>
#include <string>
#include <vector>

namespace jet::test {

// Files in memory that fail when told to and that forget, as after a power cut, part of what
// was not synced.
class MemoryFiles final : public FileSystem
{
public:
    enum class Failure {
        Once,    // the n-th operation is refused, later ones work
        ForGood, // from the n-th operation on everything is refused
        NoRoom,  // from the n-th operation on writes that lengthen a file are refused
    };
    enum class Tear {
        FirstHalf,     // a failing write puts the first half of its bytes
        RandomSectors, // a failing write puts some of its sectors
    };

    std::unique_ptr<File> open(const std::filesystem::path& path, FileMode mode) override;
    bool exists(const std::filesystem::path& path) const override;
    void remove(const std::filesystem::path& path) override;
    void rename(const std::filesystem::path& from, const std::filesystem::path& to) override;
    void replace(const std::filesystem::path& from, const std::filesystem::path& to,
                 const std::function<void()>& release) override;
    void syncDirectory(const std::filesystem::path& directory) override;

    // Operations are open, write, truncate, sync, remove, rename and syncDirectory; n counts
    // from 0.
    void failAt(int n, Failure failure, Fault fault = Fault::Io);
    void failNever() { m_failAt = -1; }
    // A failing remove() has removed the name, but not durably.
    void failRemovalsLate(bool late) { m_removeFirst = late; }
    void tearWrites(Tear tear, unsigned seed = 0);
    // What a failing sync() was to put on the medium goes with the next power cut, even when
    // a later sync() succeeds: systems forget which pages they could not write.
    void forgetAtFailedSyncs(bool forget) { m_forget = forget; }
    int operations() const { return m_operations; }
    // Writes that lengthen any file beyond this are refused as on a full disk.
    void limitFileSize(std::uint64_t bytes) { m_sizeLimit = bytes; }

    // All handles must be closed. Each sector written since the last sync stays or is lost,
    // and so are names not synced, as the seed's random numbers say.
    void powerCut(unsigned seed);

    std::vector<std::uint8_t> content(const std::filesystem::path& path) const;
    void setContent(const std::filesystem::path& path, std::vector<std::uint8_t> bytes);

private:
    friend class MemoryFile;
    struct Stored;

    void count();
    bool countWrite();

    std::map<std::string, std::shared_ptr<Stored>> m_files;
    std::map<std::string, std::shared_ptr<Stored>> m_durable; // names and files after a cut
    int m_operations = 0;
    int m_failAt = -1;
    Failure m_failure = Failure::Once;
    bool m_removeFirst = false;
    bool m_forget = false;
    Tear m_tear = Tear::FirstHalf;
    std::mt19937 m_random;
    Fault m_fault = Fault::Io;
    std::uint64_t m_sizeLimit = ~std::uint64_t{0};
};

} // namespace jet::test
