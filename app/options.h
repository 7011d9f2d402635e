#pragma once

#include <QString>
#include <QStringList>

#include <optional>

namespace app {

// What the command line asks the desktop program to do.
struct Options
{
    QString file;        // to open, or to create with newFile
    QStringList ignored; // further files: only the first is opened
    bool demo = false;
    bool newFile = false;
    bool readOnly = false;
    bool openLast = true;
};

// Text for the terminal and the exit status, instead of a window.
struct Reply
{
    QString text;
    int status = 0; // 0 as asked, 2 wrong usage
};

struct Parsed
{
    Options options;
    std::optional<Reply> reply;
};

// `arguments` begin with the program's own name.
Parsed parseArguments(const QStringList& arguments);

} // namespace app
