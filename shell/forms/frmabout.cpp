#include "shell/forms/frmabout.h"

#include "shell/forms/programicon.h"
#include "shell/service/programdetails.h"
#include "ui_frmabout.h"

#include <QClipboard>
#include <QGuiApplication>

using namespace Qt::StringLiterals;

namespace shell {

frmAbout::frmAbout(QWidget* parent)
    : QDialog(parent)
    , ui(std::make_unique<Ui::frmAbout>())
{
    ui->setupUi(this);
    ui->picIcon->setPixmap(programIcon().pixmap(64));
    ui->lblProgram->setText(
        u"%1\nВерсия %2"_s.arg(QGuiApplication::applicationDisplayName(), programVersion()));
    for (const Component& component : components()) {
        new QTreeWidgetItem(ui->lvComponents,
                            {component.name, component.version, component.licence});
    }
    connect(ui->cmdCopy, &QPushButton::clicked, this, &frmAbout::copyDetails);
    connect(ui->cmdClose, &QPushButton::clicked, this, &frmAbout::accept);
    ui->cmdClose->setFocus();
}

frmAbout::~frmAbout() = default;

void frmAbout::copyDetails()
{
    QGuiApplication::clipboard()->setText(programDetails());
    ui->lblCopied->setText(u"Сведения скопированы."_s);
}

} // namespace shell
