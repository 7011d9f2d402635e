#pragma once

#include <QByteArray>
#include <QString>

#include <memory>
#include <optional>

struct zip;

namespace imports {

// The parts of a zip file, read whole. What is unpacked is limited, since a small archive can
// hold far more than memory does.
class ZipParts
{
public:
    // Throws jet::Error when the file is no sound archive.
    explicit ZipParts(const QString& path);
    ~ZipParts();
    ZipParts(const ZipParts&) = delete;
    ZipParts& operator=(const ZipParts&) = delete;

    // Nothing when there is no such part. Throws jet::Error: damaged, or too large.
    std::optional<QByteArray> read(const QString& name);

private:
    struct Close
    {
        void operator()(::zip* archive) const;
    };
    std::unique_ptr<::zip, Close> m_zip;
    qint64 m_unpacked = 0; // bytes so far
};

} // namespace imports
