#pragma once

#include <QDialog>

#include <cstdint>
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
    // Requires an open session, which must outlive the dialog. Throws jet::Error.
    frmAnaliz(shell::Session& session, std::vector<std::int64_t> keys, QWidget* parent = nullptr);
    ~frmAnaliz() override;

private:
    void setUpTable();
    QLayout* dateRow();
    QLayout* buttonRow();
    void count(QDate through);
    void takeDate();
    void copyTable();

    shell::Session& m_session;
    std::vector<std::int64_t> m_keys;
    AnalysisModel* m_model;
    QTableView* m_table;
    DateBox* m_through;
    QLabel* m_note;
};

} // namespace refbooks
