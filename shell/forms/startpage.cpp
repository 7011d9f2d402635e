#include "shell/forms/startpage.h"

#include "shell/forms/paletteicon.h"
#include "shell/forms/startbutton.h"
#include "shell/settings.h"
#include "ui_startpage.h"

#include <QDir>
#include <QFileInfo>

using namespace Qt::StringLiterals;

namespace shell {

namespace {

constexpr QSize kIconSize(32, 32);
constexpr qsizetype kRecentShown = 5; // the file menu has the others

// Without a description the button stays as flat as a list row, yet is a button for the
// keyboard and for screen readers.
StartButton* fileButton(const QString& path)
{
    const QFileInfo file(path);
    const bool there = file.isFile();
    auto* button = new StartButton(file.fileName().replace(u'&', u"&&"_s));
    button->setDescription(
        there ? QDir::toNativeSeparators(file.absolutePath())
              : u"Файл не найден: %1"_s.arg(QDir::toNativeSeparators(file.absolutePath())));
    button->setObjectName(u"cmdRecent"_s);
    button->setIcon(paletteIcon(u"keyStart"_s));
    button->setIconSize(kIconSize);
    button->setEnabled(there);
    button->setAccessibleName(file.fileName());
    button->setAccessibleDescription(button->description());
    return button;
}

} // namespace

StartPage::StartPage(Settings& settings, QWidget* parent)
    : QWidget(parent)
    , m_settings(settings)
    , ui(std::make_unique<Ui::StartPage>())
{
    ui->setupUi(this);
    QFont large = font();
    large.setPointSizeF(large.pointSizeF() * 1.6);
    ui->heading->setFont(large);
    QFont bold = font();
    bold.setBold(true);
    ui->recentHeading->setFont(bold);
    ui->recentHeading->setContentsMargins(0, 18, 0, 0);
    ui->hint->setContentsMargins(0, 0, 0, 12);
    ui->cmdCreate->setIcon(paletteIcon(u"keyNew"_s));
    ui->cmdOpen->setIcon(paletteIcon(u"Open"_s));
    ui->cmdDemo->setIcon(paletteIcon(u"demo"_s));
    for (auto* button : {ui->cmdCreate, ui->cmdOpen, ui->cmdDemo}) {
        button->setIconSize(kIconSize);
        button->setMinimumWidth(fontMetrics().averageCharWidth() * 70);
        button->setAccessibleName(button->text());
        button->setAccessibleDescription(button->description());
    }
    connect(ui->cmdCreate, &StartButton::clicked, this, &StartPage::createWanted);
    connect(ui->cmdOpen, &StartButton::clicked, this, &StartPage::openWanted);
    connect(ui->cmdDemo, &StartButton::clicked, this, &StartPage::demoWanted);
}

StartPage::~StartPage() = default;

void StartPage::setDemoOffered(bool offered)
{
    ui->cmdDemo->setVisible(offered);
}

void StartPage::focusFirst()
{
    for (auto* button : findChildren<StartButton*>(u"cmdRecent"_s)) {
        if (button->isEnabled()) {
            button->setFocus();
            return;
        }
    }
    ui->cmdCreate->setFocus();
}

void StartPage::showEvent(QShowEvent* event)
{
    showRecentFiles();
    focusFirst();
    QWidget::showEvent(event);
}

void StartPage::showRecentFiles()
{
    for (auto* button : findChildren<StartButton*>(u"cmdRecent"_s)) {
        button->setObjectName({});
        ui->recentFiles->removeWidget(button);
        button->hide();
        button->deleteLater(); // its own click may be what brought us here
    }
    const QStringList paths = m_settings.recentFiles().mid(0, kRecentShown);
    ui->recentHeading->setVisible(!paths.isEmpty());
    for (const QString& path : paths) {
        auto* button = fileButton(path);
        connect(button, &StartButton::clicked, this, [this, path] { emit fileWanted(path); });
        ui->recentFiles->addWidget(button);
        button->show(); // the layout would do it too late to take the focus
    }
}

} // namespace shell
