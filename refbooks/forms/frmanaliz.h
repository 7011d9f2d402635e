#pragma once

#include "sheets/table.h"

#include <QDialog>

#include <cstdint>
#include <functional>
#include <memory>
#include <vector>

class QLabel;
class QTableView;

namespace shell {
class Session;
}

namespace refbooks {

class AnalysisModel;
class DateBox;

// The hours planned, held and left of workload rows, counted up to a day.
class frmAnaliz final : public QDialog
{
    Q_OBJECT

public:
    using Export = std::function<void(const sheets::Table&)>;

    // Requires an open session, which must outlive the dialog. `write` asks for a file and
    // writes the table there; without it that is disabled. Throws jet::Error.
    frmAnaliz(shell::Session& session, std::vector<std::int64_t> keys, Export write = {},
              QWidget* parent = nullptr);
    ~frmAnaliz() override;

private:
    void setUpTable();
    QLayout* dateRow();
    QLayout* buttonRow();
    void count(QDate through);
    void takeDate();
    void exportTable();
    void copyTable();

    shell::Session& m_session;
    std::vector<std::int64_t> m_keys;
    Export m_write;
    AnalysisModel* m_model;
    QTableView* m_table;
    DateBox* m_through;
    QLabel* m_note;
};

} // namespace refbooks
