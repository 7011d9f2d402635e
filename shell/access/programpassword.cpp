#include "shell/access/programpassword.h"

#include <QCryptographicHash>
#include <QPasswordDigestor>
#include <QRandomGenerator>
#include <QStringList>

#include <array>

using namespace Qt::StringLiterals;

namespace shell {

namespace {

constexpr int kRounds = 100'000; // about a tenth of a second, felt by guessing programs only
constexpr int kKeyBytes = 32;
const QString kMethod = u"pbkdf2-sha256"_s;

QByteArray derived(const QString& password, const QByteArray& salt, int rounds)
{
    return QPasswordDigestor::deriveKeyPbkdf2(QCryptographicHash::Sha256, password.toUtf8(), salt,
                                              rounds, kKeyBytes);
}

QByteArray newSalt()
{
    std::array<quint32, 4> words{};
    QRandomGenerator::system()->fillRange(words.data(), words.size());
    return {reinterpret_cast<const char*>(words.data()), sizeof words};
}

} // namespace

QString protectedPassword(const QString& password)
{
    const QByteArray salt = newSalt();
    const QByteArray key = derived(password, salt, kRounds);
    return QStringList{kMethod, QString::number(kRounds), QString::fromLatin1(salt.toHex()),
                       QString::fromLatin1(key.toHex())}
        .join(u'$');
}

bool isPassword(const QString& typed, const QString& stored)
{
    const QStringList parts = stored.split(u'$');
    if (parts.size() != 4 || parts[0] != kMethod)
        return false;
    bool isNumber = false;
    const int rounds = parts[1].toInt(&isNumber);
    if (!isNumber || rounds < 1 || rounds > 10 * kRounds)
        return false;
    const QByteArray key = QByteArray::fromHex(parts[3].toLatin1());
    return key.size() == kKeyBytes
           && key == derived(typed, QByteArray::fromHex(parts[2].toLatin1()), rounds);
}

} // namespace shell
