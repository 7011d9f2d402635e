#pragma once

#include <QList>
#include <QString>

namespace shell {

// A mounted removable drive.
struct Drive
{
    QString label; // "" when it has none
    QString root;  // where it is mounted
    qint64 freeBytes = 0;
    qint64 totalBytes = 0;
    bool readOnly = false;
};

// Gives the drives: those of the system in the program, prepared ones in tests.
class Drives
{
public:
    virtual ~Drives() = default;
    virtual QList<Drive> removable() const = 0;
};

class SystemDrives final : public Drives
{
public:
    QList<Drive> removable() const override;
};

// Whether a volume can be taken away: what the system says of its disk below `system`
// ("/sys"), or where desktops mount what is plugged in.
bool isRemovable(const QString& device, const QString& root, const QString& system);

} // namespace shell
