#pragma once

#include <QLocalServer>
#include <QLockFile>
#include <QObject>
#include <QString>

// One studio at a time: the first start holds a lock file and listens on a local socket; a
// later start asks it to come to the front instead of opening a second window on the same
// saved state. A lock left by a studio that was killed does not count.
class SingleInstance : public QObject
{
    Q_OBJECT

public:
    // The lock in the data folder, the socket named after the application id.
    explicit SingleInstance(QObject *parent = nullptr);
    SingleInstance(const QString &lockFile, const QString &socketName, QObject *parent = nullptr);

    // True when this process is the studio; false when another studio runs and has been asked
    // to show itself, so this process should end.
    bool claim();

signals:
    // A later start asked this studio to come to the front.
    void activationRequested();

private:
    bool askRunningStudio();
    void listen();

    QString m_socketName;
    QLockFile m_lock;
    QLocalServer m_server;
};
