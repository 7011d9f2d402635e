# Windows and commands of the service and help menus.
target_sources(shell_forms PRIVATE
    frmabout.cpp
    frmabout.ui
    frmcalend.cpp
    frmcalend.ui
    frmhelp.cpp
    frmhelp.ui
    fullscreen.cpp
    help.qrc
    manualview.cpp
    qtprogramstarter.cpp
    servicecommands.cpp
    statustips.cpp
)
