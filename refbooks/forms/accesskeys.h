#pragma once

#include <QStringList>

namespace refbooks {

// The captions with "&" before a letter that no other one of them uses and that is not among
// `taken` either: the first letter of a word where that is possible. A caption for which
// nothing is left stays as it is.
QStringList withAccessKeys(QStringList captions, const QString& taken = {});

} // namespace refbooks
