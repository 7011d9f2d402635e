#include "shell/forms/toolbarkeys.h"

#include "shell/forms/paletteicon.h"

#include <QAction>
#include <QMenu>
#include <QToolBar>
#include <QToolButton>

using namespace Qt::StringLiterals;

namespace shell {

namespace {

struct Key
{
    QString name;
    QString command; // control name of the menu item
    bool groupEnd = false;
    QString captionOf = command; // control name of the item or menu that names the key
};

const Key kKeys[] = {
    {u"keyStart"_s, {}, true},
    {u"Pos"_s, u"mnuposechaemost"_s},
    {u"Usp"_s, u"mnuuspevaemost"_s},
    {u"Print"_s, u"mnuprint"_s, true},
    {u"Stud"_s, u"mnustud"_s},
    {u"Spezial"_s, u"mnuspez"_s},
    {u"Predmet"_s, u"mnuPred"_s},
    {u"Nagr"_s, u"mnunagr"_s},
    {u"Prep"_s, u"mnuprepod"_s},
    {u"Grup"_s, u"mnugrup"_s, true},
    {u"keyNew"_s, u"mnuFileCr"_s},
    {u"Open"_s, u"mnuFileOpen"_s},
    {u"Save"_s, u"mnuFileSaveAs"_s, true},
    {u"keyRep"_s, u"mnuotpos"_s, false, u"mnuotchet"_s}, // any report is chosen in its dialog
    {u"keyOpt"_s, u"mnuNastroiki"_s},
    {u"keyObn"_s, u"mnuObnovlenie"_s, true},
    {u"keyHelp"_s, u"mnuHelpManual"_s},
};

QAction* itemOrMenu(QWidget& menus, const QString& name)
{
    const auto* menu = menus.findChild<QMenu*>(name);
    return menu ? menu->menuAction() : menus.findChild<QAction*>(name);
}

void follow(QAction& key, QAction& command, const QAction& caption)
{
    const auto mirror = [&key, &command, &caption] {
        key.setEnabled(command.isEnabled());
        key.setText(caption.toolTip()); // without access key and dots
    };
    mirror();
    QObject::connect(&command, &QAction::changed, &key, mirror);
    QObject::connect(&key, &QAction::triggered, &command, &QAction::trigger);
}

// The buttons that show what finds no room have a picture and no text.
void nameOverflowButtons(const QWidget& window)
{
    for (const QString& name : {u"qt_toolbar_ext_button"_s, u"qt_menubar_ext_button"_s}) {
        if (auto* button = window.findChild<QWidget*>(name)) {
            button->setAccessibleName(u"Показать остальное"_s);
        }
    }
}

} // namespace

QAction* fillToolbar(QToolBar& bar, QWidget& menus)
{
    for (const Key& row : kKeys) {
        QAction* key = bar.addAction(paletteIcon(row.name), {});
        key->setObjectName(row.name);
        if (!row.command.isEmpty()) {
            follow(*key, *itemOrMenu(menus, row.command), *itemOrMenu(menus, row.captionOf));
        }
        if (row.groupEnd) {
            bar.addSeparator();
        }
    }
    nameOverflowButtons(menus);
    return bar.findChild<QAction*>(u"keyStart"_s);
}

} // namespace shell
