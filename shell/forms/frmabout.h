#pragma once

#include <QDialog>

#include <memory>

namespace shell {

namespace Ui {
class frmAbout;
}

// What the program is, which version, on what it stands, and under which licence.
class frmAbout final : public QDialog
{
    Q_OBJECT

public:
    explicit frmAbout(QWidget* parent = nullptr);
    ~frmAbout() override;

private:
    void copyDetails();

    std::unique_ptr<Ui::frmAbout> ui;
};

} // namespace shell
