// Writes code edits to a store one after another, printing each edit's number once its
// write has returned, so a test can kill it at any moment and know what must have survived.
#include "profile/SqlitePreferencesStore.h"

#include <QCoreApplication>

#include <cstdio>

int main(int argc, char *argv[])
{
    QCoreApplication app(argc, argv);
    if (argc < 2)
        return 2;
    // A bound, so a writer nobody kills still ends.
    const qint64 edits = argc > 2 ? QByteArray(argv[2]).toLongLong() : 100000;
    SqlitePreferencesStore store(QString::fromLocal8Bit(argv[1]));
    if (store.filePath().isEmpty())
        return 3;
    for (qint64 n = 1; n <= edits; ++n) {
        if (!store.setString(QStringLiteral("code0"), QStringLiteral("fd %1").arg(n)))
            return 4;
        std::printf("%lld\n", static_cast<long long>(n));
        std::fflush(stdout);
    }
    return 0;
}
