#include "app/singleinstance.h"

#include <QCryptographicHash>
#include <QDataStream>
#include <QDir>
#include <QLocalSocket>
#include <QStandardPaths>

#include <utility>

using namespace Qt::StringLiterals;

namespace app {

namespace {

constexpr int kConnectMs = 300;
constexpr int kAnswerMs = 1500;
constexpr quint32 kMark = 0x4a55524e; // "JURN", then the options as below
constexpr auto kStreamVersion = QDataStream::Qt_6_0;
const QByteArray kTaken("taken");

QByteArray packed(const Options& options)
{
    QByteArray bytes;
    QDataStream out(&bytes, QIODevice::WriteOnly);
    out.setVersion(kStreamVersion);
    out << kMark << options.file << options.demo << options.newFile << options.readOnly
        << options.openLast;
    return bytes;
}

// Nothing until all of it has come.
std::optional<Options> unpacked(QLocalSocket& socket)
{
    QDataStream in(&socket);
    in.setVersion(kStreamVersion);
    in.startTransaction();
    quint32 mark = 0;
    Options options;
    in >> mark >> options.file >> options.demo >> options.newFile >> options.readOnly
        >> options.openLast;
    if (!in.commitTransaction() || mark != kMark) {
        return std::nullopt;
    }
    return options;
}

} // namespace

SingleInstance::SingleInstance(QString name, QObject* parent)
    : QObject(parent)
    , m_name(std::move(name))
{
    m_server.setSocketOptions(QLocalServer::UserAccessOption);
    connect(&m_server, &QLocalServer::newConnection, this, &SingleInstance::receive);
}

bool SingleInstance::handOver(const Options& options) const
{
    QLocalSocket socket;
    socket.connectToServer(m_name);
    if (!socket.waitForConnected(kConnectMs)) {
        return false;
    }
    socket.write(packed(options));
    return socket.waitForBytesWritten(kConnectMs) && socket.waitForReadyRead(kAnswerMs)
           && socket.readAll() == kTaken;
}

bool SingleInstance::listen()
{
    if (m_server.listen(m_name)) {
        return true;
    }
    // What was left by one that was killed; one that lives would have answered before.
    QLocalServer::removeServer(m_name);
    return m_server.listen(m_name);
}

void SingleInstance::receive()
{
    while (QLocalSocket* socket = m_server.nextPendingConnection()) {
        connect(socket, &QLocalSocket::disconnected, socket, &QObject::deleteLater);
        const auto read = [this, socket] {
            if (const auto options = unpacked(*socket)) {
                socket->write(kTaken);
                socket->flush();
                emit requested(*options);
            }
        };
        connect(socket, &QLocalSocket::readyRead, this, read);
        read(); // what came before the connection was taken up
    }
}

QString instanceName()
{
    const QString settings =
        QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation);
    const QByteArray hash =
        QCryptographicHash::hash(settings.toUtf8(), QCryptographicHash::Sha256).toHex().left(16);
    const QString name = u"jurnal-"_s + QString::fromLatin1(hash);
#ifdef Q_OS_WIN
    return name + u'-' + qEnvironmentVariable("USERNAME");
#else
    return QDir(QStandardPaths::writableLocation(QStandardPaths::RuntimeLocation)).filePath(name);
#endif
}

} // namespace app
