#include "app/SingleInstance.h"

#include "profile/DataFolder.h"

#include <QDir>
#include <QFileInfo>
#include <QLocalSocket>
#include <QStandardPaths>
#include <QThread>

namespace {

// A full path keeps two users of one computer from meeting on the same socket name.
QString defaultSocketName()
{
    const QString runtime = QStandardPaths::writableLocation(QStandardPaths::RuntimeLocation);
    return runtime.isEmpty() ? QLatin1String(applicationId) : runtime + u'/' + QLatin1String(applicationId);
}

} // namespace

SingleInstance::SingleInstance(QObject *parent)
    : SingleInstance(dataFolder() + QStringLiteral("/studio.lock"), defaultSocketName(), parent)
{
}

SingleInstance::SingleInstance(const QString &lockFile, const QString &socketName, QObject *parent)
    : QObject(parent)
    , m_socketName(socketName)
    , m_lock(lockFile)
    , m_server(this)
{
    // A studio stays open for hours: only a dead owner makes the lock stale, never its age.
    m_lock.setStaleLockTime(0);
    QDir().mkpath(QFileInfo(lockFile).absolutePath());
    connect(&m_server, &QLocalServer::newConnection, this, [this] {
        while (QLocalSocket *socket = m_server.nextPendingConnection()) {
            connect(socket, &QLocalSocket::disconnected, socket, &QObject::deleteLater);
            socket->disconnectFromServer();
            emit activationRequested();
        }
    });
}

bool SingleInstance::claim()
{
    if (m_lock.tryLock(0)) {
        listen();
        return true;
    }
    if (m_lock.error() == QLockFile::LockFailedError) {
        // The running studio may still be starting and not listening yet.
        for (int attempt = 0; attempt < 20; ++attempt) {
            if (askRunningStudio())
                break;
            QThread::msleep(100);
        }
        return false;
    }
    // No lock can be made (a read-only folder): a studio that answers still comes first.
    if (askRunningStudio())
        return false;
    listen();
    return true;
}

bool SingleInstance::askRunningStudio()
{
    QLocalSocket socket;
    socket.connectToServer(m_socketName);
    if (!socket.waitForConnected(500))
        return false;
    socket.write("show\n");
    socket.waitForBytesWritten(500);
    socket.waitForDisconnected(500);
    return true;
}

void SingleInstance::listen()
{
    // A socket file left by a killed studio would refuse the name; the lock says it is ours now.
    QLocalServer::removeServer(m_socketName);
    m_server.setSocketOptions(QLocalServer::UserAccessOption);
    m_server.listen(m_socketName);
}
