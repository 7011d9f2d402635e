#include "journals/counted.h"

namespace journals {

QString counted(int number, const QString& one, const QString& few, const QString& many)
{
    const int tens = number % 100, ones = number % 10;
    const bool teen = tens >= 11 && tens <= 14;
    const QString& word = teen || ones == 0 || ones > 4 ? many : ones == 1 ? one : few;
    return QString::number(number) + u' ' + word;
}

} // namespace journals
