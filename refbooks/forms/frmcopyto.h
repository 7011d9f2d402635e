#pragma once

#include "refbooks/workloadcopy.h"

#include <QDialog>

class QLabel;
class QLineEdit;
class QListWidget;
class QPushButton;
class QRadioButton;

namespace refbooks {

// Asks to which groups, or to which subgroups, workload is to be copied.
class frmCopyTo final : public QDialog
{
    Q_OBJECT

public:
    // `wording` must outlive the dialog.
    frmCopyTo(std::vector<CopyTarget> groups, std::vector<CopyTarget> subgroups,
              const shell::Wording& wording, QWidget* parent = nullptr);

    CopyTo to() const;
    // What is ticked, in the list's order; what the filter line hides counts too.
    std::vector<CopyTarget> chosen() const;

private:
    void setUpLayout();
    QLayout* kindRow();
    QLayout* filterRow();
    void showTargets();
    void narrow(const QString& part);
    void tickShown(bool ticked);
    void showChoice();
    const std::vector<CopyTarget>& targets() const;

    std::vector<CopyTarget> m_groups;
    std::vector<CopyTarget> m_subgroups;
    const shell::Wording& m_wording;
    QRadioButton* m_toGroups;
    QRadioButton* m_toSubgroups;
    QLabel* m_prompt;
    QLineEdit* m_filter;
    QListWidget* m_list;
    QPushButton* m_yes;
};

} // namespace refbooks
