// A second window on the same store: saves one creation for each line it reads, and after the
// last one earns a badge and names a companion, printing a line once each step has returned.
//   gallery_saver <store> <saves>
#include "curriculum/Missions.h"
#include "support/StudioFixture.h"

#include <QCoreApplication>

#include <cstdio>
#include <iostream>
#include <string>

int main(int argc, char *argv[])
{
    QCoreApplication app(argc, argv);
    if (argc < 3)
        return 2;
    SqlitePreferencesStore store(QString::fromLocal8Bit(argv[1]));
    Studio studio(store, false);
    studio.enterFree();
    studio.setCode(QStringLiteral("fd 20 rt 45 fd 20"));
    stepToEnd(studio);
    studio.setCreationTitle(QStringLiteral("Other window"));
    std::puts("ready");
    std::fflush(stdout);
    std::string line;
    for (int n = std::atoi(argv[2]); n > 0 && std::getline(std::cin, line); --n) {
        studio.saveCreation();
        studio.finishSaving();
        std::puts("saved");
        std::fflush(stdout);
    }
    studio.select(3);
    studio.setCode(missions().at(3).solution);
    stepToEnd(studio);
    studio.saveCompanion(1, QStringLiteral("Pebble"));
    std::puts("done");
    std::fflush(stdout);
    return studio.isCompleted(3) ? 0 : 1;
}
