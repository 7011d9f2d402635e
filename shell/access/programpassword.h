#pragma once

#include <QString>

namespace shell {

// The program password as the settings file keeps it: "pbkdf2-sha256$<rounds>$<salt>$<key>",
// salt and key in hexadecimal. The file reveals nothing of the password itself.
QString protectedPassword(const QString& password);

// Whether `typed` is the password that protectedPassword() turned into `stored`. A stored text
// of another form matches nothing.
bool isPassword(const QString& typed, const QString& stored);

} // namespace shell
