#pragma once

#include <QWidget>

#include <memory>

namespace shell {

class Settings;

namespace Ui {
class StartPage;
}

// What the main window shows while no file is open: the ways to get one, as large buttons
// that Tab and the arrow keys reach.
class StartPage final : public QWidget
{
    Q_OBJECT

public:
    explicit StartPage(Settings& settings, QWidget* parent = nullptr);
    ~StartPage() override;

    void setDemoOffered(bool offered);
    // Puts the keyboard on the likeliest choice: the last file, else "Создать".
    void focusFirst();

signals:
    void createWanted();
    void openWanted();
    void demoWanted();
    void fileWanted(const QString& path);

protected:
    void showEvent(QShowEvent* event) override;

private:
    void showRecentFiles();

    Settings& m_settings;
    std::unique_ptr<Ui::StartPage> ui;
};

} // namespace shell
