#pragma once

#include <QWidget>

#include <memory>

namespace shell {

class ManualView;

namespace Ui {
class frmHelp;
}

// The user manual in a window of its own: contents, search, and the way back.
class frmHelp final : public QWidget
{
    Q_OBJECT

public:
    // `owner` closes it when it goes; the window stands beside it.
    explicit frmHelp(QWidget* owner);
    ~frmHelp() override;

    // Shows that page of the manual and comes to the front; "" stays where the user was.
    void open(const QString& anchor = {});

private:
    void fillContents();
    void addKeys();
    void search(bool backwards);
    void showPlace();

    std::unique_ptr<Ui::frmHelp> ui;
    ManualView* m_manual;
};

} // namespace shell
