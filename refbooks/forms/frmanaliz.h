#pragma once

#include <QDialog>

#include <cstdint>
#include <vector>

namespace shell {
class Session;
}

namespace refbooks {

// "Анализ нагрузки": the hours planned, held and left of the workload rows.
class frmAnaliz final : public QDialog
{
    Q_OBJECT

public:
    // Requires an open session, which must outlive the dialog. Throws jet::Error.
    frmAnaliz(shell::Session& session, std::vector<std::int64_t> keys, QWidget* parent = nullptr);

private:
    shell::Session& m_session;
    std::vector<std::int64_t> m_keys;
};

} // namespace refbooks
