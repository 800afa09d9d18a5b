#include "app/SingleInstance.h"
#include "app/Studio.h"
#include "curriculum/Missions.h"
#include "profile/CompanionPictures.h"
#include "support/StudioFixture.h"

#include <QFile>
#include <QLockFile>
#include <QProcess>
#include <QSignalSpy>
#include <QTest>

namespace {

QVariantList list(std::initializer_list<QVariant> items)
{
    return QVariantList(items);
}

QList<qint64> firstMissionsCompleted(int count)
{
    QList<qint64> indices;
    for (int i = 0; i < count; ++i)
        indices.append(i);
    return indices;
}

} // namespace

class StartupTest : public QObject
{
    Q_OBJECT

    std::unique_ptr<StudioFixture> fixture;

private slots:
    void init() { fixture = std::make_unique<StudioFixture>(); }

    void aFirstStartOpensTheWelcome()
    {
        const Studio &studio = fixture->studio;
        QVERIFY(studio.welcome());
        QVERIFY(studio.needsIntroduction());
        QCOMPARE(studio.mission(), 0);
        QVERIFY(!studio.free());
        QCOMPARE(studio.code(), missions().first().starter);
        QCOMPARE(studio.message(), QStringLiteral("Ready when you are."));
        QVERIFY(!studio.targetStrokes().isEmpty());
        QCOMPARE(studio.targetStrokes(), studio.simulate(missions().first().solution));
        QVERIFY(!fixture->store.string(QStringLiteral("code0"))); // the starter is not written back
        QVERIFY(studio.images().isEmpty());
    }

    void storedValuesAreSanitised_data()
    {
        QTest::addColumn<QVariantMap>("stored");
        QTest::addColumn<QList<int>>("completed");
        QTest::addColumn<int>("turtle");
        QTest::addColumn<int>("theme");

        const QVariantList three = list({0, 1, 2});
        QVariantList all;
        for (int i = 0; i < 30; ++i)
            all.append(i);
        QTest::newRow("companion past the end, locked") << QVariantMap{{"turtle", 7}} << QList<int>{} << 0 << 0;
        QTest::newRow("companion past the end, royal earned")
            << QVariantMap{{"turtle", 7}, {"completed", three}} << QList<int>{0, 1, 2} << 3 << 0;
        QTest::newRow("negative companion") << QVariantMap{{"turtle", -2}} << QList<int>{} << 0 << 0;
        QTest::newRow("companion as text") << QVariantMap{{"turtle", "2"}} << QList<int>{} << 0 << 0;
        QTest::newRow("theme past the end, all earned")
            << QVariantMap{{"theme", 9}, {"completed", all}} << QList<int>(all.size()) << 0 << 5;
        QTest::newRow("theme past the end, few badges")
            << QVariantMap{{"theme", 9}, {"completed", three}} << QList<int>{0, 1, 2} << 0 << 0;
        QTest::newRow("theme locked") << QVariantMap{{"theme", 1}, {"completed", three}} << QList<int>{0, 1, 2} << 0 << 0;
        QTest::newRow("indices out of range dropped")
            << QVariantMap{{"completed", list({31, -1, 4, 2})}} << QList<int>{2, 4} << 0 << 0;
        QTest::newRow("a text element spoils the array")
            << QVariantMap{{"completed", list({1, "2"})}, {"turtle", 3}} << QList<int>{} << 0 << 0;
        QTest::newRow("completed as text") << QVariantMap{{"completed", "0,1,2"}} << QList<int>{} << 0 << 0;
    }

    void storedValuesAreSanitised()
    {
        QFETCH(QVariantMap, stored);
        QFETCH(QList<int>, completed);
        QFETCH(int, turtle);
        QFETCH(int, theme);
        if (completed.size() == 30)
            std::iota(completed.begin(), completed.end(), 0);
        for (auto it = stored.cbegin(); it != stored.cend(); ++it)
            QVERIFY(fixture->store.setValue(it.key(), it.value()));
        const auto studio = fixture->restart();
        QCOMPARE(studio->completedInOrder(), completed);
        QCOMPARE(studio->turtle(), turtle);
        QCOMPARE(studio->theme(), theme);
        // The sanitised companion and canvas are what the store holds afterwards.
        QCOMPARE(fixture->store.integer(QStringLiteral("turtle")), turtle);
        QCOMPARE(fixture->store.integer(QStringLiteral("theme")), theme);
    }

    void storedNamesAreCleaned_data()
    {
        QTest::addColumn<QVariantMap>("stored");
        QTest::addColumn<QString>("playerName");
        QTest::addColumn<QString>("turtleName");
        QTest::addColumn<bool>("welcome");
        QTest::addColumn<QString>("message");
        QTest::newRow("blanks around and between")
            << QVariantMap{{"playerName", "  Ada   Love "}, {"hasCompletedWelcome", true}} << "Ada Love" << "Clover"
            << false << "Ready when you are, Ada Love.";
        QTest::newRow("only blanks")
            << QVariantMap{{"playerName", "   "}, {"hasCompletedWelcome", true}} << "" << "Clover" << true
            << "Ready when you are.";
        QTest::newRow("never finished the welcome")
            << QVariantMap{{"playerName", "Ada"}} << "Ada" << "Clover" << true << "Ready when you are, Ada.";
        QTest::newRow("welcome flag as text")
            << QVariantMap{{"playerName", "Ada"}, {"hasCompletedWelcome", "yes"}} << "Ada" << "Clover" << true
            << "Ready when you are, Ada.";
        QTest::newRow("nickname")
            << QVariantMap{{"turtleNames", QVariantMap{{"0", "Sprout"}}}} << "" << "Sprout" << true
            << "Ready when you are.";
        QTest::newRow("a number among the nicknames")
            << QVariantMap{{"turtleNames", QVariantMap{{"0", "Sprout"}, {"1", 5}}}} << "" << "Clover" << true
            << "Ready when you are.";
        QTest::newRow("player name as a number")
            << QVariantMap{{"playerName", 42}, {"hasCompletedWelcome", true}} << "" << "Clover" << true
            << "Ready when you are.";
    }

    void storedNamesAreCleaned()
    {
        QFETCH(QVariantMap, stored);
        QFETCH(QString, playerName);
        QFETCH(QString, turtleName);
        QFETCH(bool, welcome);
        QFETCH(QString, message);
        for (auto it = stored.cbegin(); it != stored.cend(); ++it)
            QVERIFY(fixture->store.setValue(it.key(), it.value()));
        const auto studio = fixture->restart();
        QCOMPARE(studio->playerName(), playerName);
        QCOMPARE(studio->turtleName(), turtleName);
        QCOMPARE(studio->welcome(), welcome);
        QCOMPARE(studio->message(), message);
    }

    void aRestartGivesEverythingBack()
    {
        Studio &studio = fixture->studio;
        for (int i = 0; i < 6; ++i) {
            studio.select(i);
            studio.setCode(missions().at(i).solution);
            stepToEnd(studio);
        }
        studio.finishWelcome(1, QStringLiteral("Peachy  Keen"), QStringLiteral("Mo"));
        studio.setTheme(1);
        studio.select(3);
        studio.setCode(QStringLiteral("fd 3 ; mission three"));
        studio.select(0);
        studio.setCode(QStringLiteral("fd 0 ; mission zero"));

        const auto again = fixture->restart();
        QCOMPARE(again->completedInOrder(), (QList<int>{0, 1, 2, 3, 4, 5}));
        QCOMPARE(again->playerName(), QStringLiteral("Mo"));
        QCOMPARE(again->turtle(), 1);
        QCOMPARE(again->turtleName(), QStringLiteral("Peachy Keen"));
        QCOMPARE(again->theme(), 1);
        QVERIFY(!again->welcome());
        QCOMPARE(again->mission(), 0);
        QCOMPARE(again->code(), QStringLiteral("fd 0 ; mission zero"));
        again->select(3);
        QCOMPARE(again->code(), QStringLiteral("fd 3 ; mission three"));
        QCOMPARE(again->message(), QStringLiteral("Let's try ") + missions().at(3).title.toLower() + u'.');
    }

    void eraseRemovesOnlyTheGamesKeys()
    {
        Studio &studio = fixture->studio;
        studio.select(0);
        studio.setCode(missions().at(0).solution);
        stepToEnd(studio);
        studio.finishWelcome(0, QStringLiteral("Sprout"), QStringLiteral("Ada"));
        const QStringList others{QStringLiteral("codex"), QStringLiteral("code1a"), QStringLiteral("mycode1"),
                                 QStringLiteral("Code1"), QStringLiteral("code"), QStringLiteral("window"),
                                 QStringLiteral("code1\n")};
        for (const QString &key : others)
            fixture->store.setString(key, QStringLiteral("kept"));
        fixture->store.setString(QStringLiteral("code29"), QStringLiteral("fd 1"));
        fixture->store.setString(QStringLiteral("code123"), QStringLiteral("fd 1"));
        fixture->store.setData(QStringLiteral("creations"), QByteArray("[]"));
        fixture->store.setString(QStringLiteral("freeCode"), QStringLiteral("fd 1"));
        studio.setPlayerSettings(true);

        studio.finishProfileDismissal(); // closed without confirming: nothing happens
        QCOMPARE(studio.playerName(), QStringLiteral("Ada"));

        QSignalSpy welcome(&studio, &Studio::welcomeChanged);
        studio.requestGameReset();
        QVERIFY(!studio.playerSettings());
        QVERIFY(studio.resetAfterProfileDismissal());
        QCOMPARE(studio.playerName(), QStringLiteral("Ada")); // nothing erased while the sheet closes
        studio.finishProfileDismissal();

        QCOMPARE(fixture->store.keys(), others.isEmpty() ? QStringList() : [&] {
            QStringList sorted = others;
            sorted.sort();
            return sorted;
        }());
        QVERIFY(studio.completed().isEmpty());
        QCOMPARE(studio.playerName(), QString());
        QCOMPARE(studio.turtleName(), QStringLiteral("Clover"));
        QCOMPARE(studio.code(), missions().first().starter);
        QCOMPARE(studio.message(), QStringLiteral("Ready for a brand-new adventure."));
        QVERIFY(studio.welcome());
        QCOMPARE(welcome.count(), 1);
        QVERIFY(!studio.resetAfterProfileDismissal());
        QVERIFY(!studio.hasCompletedWelcome());
        QCOMPARE(studio.rank(), QStringLiteral("Curious Coder"));

        studio.finishProfileDismissal(); // the flag is spent
        QCOMPARE(fixture->store.keys().size(), others.size());
    }

    void anUnreadableStoreFileFallsBack()
    {
        QTemporaryDir folder;
        const QString path = folder.filePath(QStringLiteral("preferences.sqlite"));
        QFile file(path);
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.write(QByteArray(4096, '\x5a'));
        file.close();
        SqlitePreferencesStore store(path);
        Studio studio(store, false);
        QVERIFY(studio.welcome());
        QCOMPARE(studio.code(), missions().first().starter);
        QVERIFY(studio.savePlayerName(QStringLiteral("Ada"))); // the store sets the old file aside
        QCOMPARE(store.string(QStringLiteral("playerName")), QStringLiteral("Ada"));
    }

    // A lock left by a killed studio does not block the start; a second start asks the first
    // to come to the front and does not run.
    void oneStudioAtATime()
    {
        QTemporaryDir folder;
        const QString lockPath = folder.filePath(QStringLiteral("studio.lock"));
        QByteArray lock;
        {
            QLockFile held(lockPath);
            QVERIFY(held.tryLock(0));
            QFile file(lockPath);
            QVERIFY(file.open(QIODevice::ReadOnly));
            lock = file.readAll();
        }
        QProcess ended;
        ended.start(QStringLiteral("true"));
        QVERIFY(ended.waitForStarted());
        const QByteArray deadPid = QByteArray::number(ended.processId());
        QVERIFY(ended.waitForFinished());
        QFile stale(lockPath);
        QVERIFY(stale.open(QIODevice::WriteOnly));
        stale.write(deadPid + lock.mid(lock.indexOf('\n')));
        stale.close();

        const QString socket = folder.filePath(QStringLiteral("studio.socket"));
        SingleInstance first(lockPath, socket);
        QSignalSpy raised(&first, &SingleInstance::activationRequested);
        QVERIFY(first.claim());
        SingleInstance second(lockPath, socket);
        QVERIFY(!second.claim());
        QTRY_COMPARE(raised.count(), 1);
    }

    // The child sees the real progress of a store that cannot be written, is told that work
    // will not last, keeps typing, and the latest code is saved once writes succeed again.
    void aStoreThatCannotBeWritten()
    {
        QTemporaryDir folder;
        const QString path = folder.filePath(QStringLiteral("preferences.sqlite"));
        {
            SqlitePreferencesStore store(path);
            store.setIntegerArray(QStringLiteral("completed"), firstMissionsCompleted(2));
        }
        SqlitePreferencesStore store(path, SqlitePreferencesStore::Access::ReadOnly);
        Studio studio(store, false);
        QCOMPARE(studio.badges(), 2);
        QVERIFY(!studio.canSave());
        QVERIFY(studio.saveProblem().contains(folder.path()));
        QSignalSpy notice(&studio, &Studio::canSaveChanged);
        studio.setCode(QStringLiteral("fd 1"));
        studio.setCode(QStringLiteral("fd 2"));
        QCOMPARE(studio.code(), QStringLiteral("fd 2"));
        QCOMPARE(SqlitePreferencesStore(path).string(QStringLiteral("code0")), std::nullopt);
        studio.retrySaving();
        QVERIFY(studio.canSave());
        QCOMPARE(notice.count(), 1);
        QCOMPARE(SqlitePreferencesStore(path).string(QStringLiteral("code0")), QStringLiteral("fd 2"));
    }

    // A stored value start-up could not use is copied, byte for byte, beside the store before
    // anything replaces it.
    void anUnreadableValueIsKeptBeforeItIsReplaced_data()
    {
        QTest::addColumn<QString>("key");
        QTest::addColumn<QVariant>("stored");
        QTest::addColumn<QString>("replacedBy");
        QTest::addColumn<QByteArray>("kept");
        QTest::newRow("companion as text, written back at start")
            << "turtle" << QVariant(QStringLiteral("2")) << "" << QByteArray("2");
        QTest::newRow("progress as text, then a badge")
            << "completed" << QVariant(QStringLiteral("0,1")) << "badge" << QByteArray("0,1");
    }

    void anUnreadableValueIsKeptBeforeItIsReplaced()
    {
        QFETCH(QString, key);
        QFETCH(QVariant, stored);
        QFETCH(QString, replacedBy);
        QFETCH(QByteArray, kept);
        QVERIFY(fixture->store.setValue(key, stored));
        const auto studio = fixture->restart();
        if (replacedBy == QLatin1String("badge")) {
            studio->setCode(missions().first().solution);
            stepToEnd(*studio);
            QCOMPARE(studio->badges(), 1);
        }
        const QStringList files = QDir(fixture->folder.path()).entryList({QStringLiteral("preferences.sqlite.") + key + QStringLiteral(".unreadable-*")});
        QCOMPARE(files.size(), 1);
        QFile file(fixture->folder.filePath(files.first()));
        QVERIFY(file.open(QIODevice::ReadOnly));
        QCOMPARE(file.readAll(), kept);
    }

    void welcomeChoosesWhereTheChildStarts_data()
    {
        QTest::addColumn<int>("completed");
        QTest::addColumn<int>("mission");
        QTest::addColumn<bool>("free");
        QTest::newRow("first start") << 0 << 0 << false;
        QTest::newRow("five passed") << 5 << 5 << false;
        QTest::newRow("all passed") << 30 << 0 << true;
    }

    void welcomeChoosesWhereTheChildStarts()
    {
        QFETCH(int, completed);
        QFETCH(int, mission);
        QFETCH(bool, free);
        fixture->store.setIntegerArray(QStringLiteral("completed"), firstMissionsCompleted(completed));
        const auto studio = fixture->restart();
        studio->finishWelcome(1, QStringLiteral("  Pip "), QStringLiteral("Ada"));
        QCOMPARE(studio->mission(), mission);
        QCOMPARE(studio->free(), free);
        QVERIFY(!studio->welcome());
        QVERIFY(studio->hasCompletedWelcome());
        QCOMPARE(studio->message(), QStringLiteral("Ada and Pip. Let’s make something!"));
        QCOMPARE(fixture->store.boolean(QStringLiteral("hasCompletedWelcome")), true);
    }

    void aReplayByANamedChildKeepsTheMission()
    {
        fixture->store.setIntegerArray(QStringLiteral("completed"), firstMissionsCompleted(4));
        const auto studio = fixture->restart();
        studio->finishWelcome(0, QStringLiteral("Sprout"), QStringLiteral("Ada"));
        QCOMPARE(studio->mission(), 4);
        studio->select(2);
        studio->replayWelcome();
        QVERIFY(studio->welcome());
        QVERIFY(!studio->needsIntroduction());
        studio->finishWelcome(2, QStringLiteral("Zoom"), QStringLiteral("Ada B"));
        QCOMPARE(studio->mission(), 2);
        QCOMPARE(studio->message(), QStringLiteral("Ada B and Zoom. Let’s make something!"));
    }

    void refusedNamesChangeNothing()
    {
        Studio &studio = fixture->studio;
        QVERIFY(!studio.savePlayerName(QStringLiteral(" \t ")));
        QVERIFY(!studio.saveCompanion(0, QStringLiteral("\u200b")));
        QVERIFY(!studio.saveCompanion(Studio::royalCompanion, QStringLiteral("Queenie")));
        studio.finishWelcome(0, QStringLiteral("Sprout"), QStringLiteral("   "));
        QVERIFY(studio.welcome());
        QVERIFY(fixture->store.keys() == QStringList({QStringLiteral("theme"), QStringLiteral("turtle")}));
        QCOMPARE(studio.message(), QStringLiteral("Ready when you are."));
    }

    void theRoyalCompanionNeedsThreeBadges()
    {
        fixture->store.setIntegerArray(QStringLiteral("completed"), firstMissionsCompleted(2));
        auto studio = fixture->restart();
        QVERIFY(!studio->saveCompanion(3, QString()));
        QVERIFY(!studio->saveCompanion(3, QStringLiteral("Queenie")));
        fixture->store.setIntegerArray(QStringLiteral("completed"), firstMissionsCompleted(3));
        studio = fixture->restart();
        QVERIFY(studio->saveCompanion(3, QStringLiteral("Your Majesty")));
        QCOMPARE(studio->message(), QStringLiteral("Your Majesty is ready for your next idea."));
        QCOMPARE(fixture->store.stringDictionary(QStringLiteral("turtleNames")),
                 (QMap<QString, QString>{{QStringLiteral("3"), QStringLiteral("Your Majesty")}}));
        QCOMPARE(fixture->store.integer(QStringLiteral("turtle")), 3);
    }

    void companionPicturesAreCutRowByRow_data()
    {
        QTest::addColumn<QSize>("sheetSize");
        QTest::newRow("even") << QSize(800, 800);
        QTest::newRow("odd and wide") << QSize(641, 403);
    }

    void companionPicturesAreCutRowByRow()
    {
        QFETCH(QSize, sheetSize);
        QImage sheet(sheetSize, QImage::Format_RGB32);
        const QList<QColor> colours{Qt::red, Qt::green, Qt::blue, Qt::yellow};
        const int w = sheetSize.width() / 2;
        const int h = sheetSize.height() / 2;
        sheet.fill(Qt::black);
        for (int y = 0; y < 2 * h; ++y)
            for (int x = 0; x < 2 * w; ++x)
                sheet.setPixelColor(x, y, colours.at((y / h) * 2 + x / w));
        const QList<QImage> pictures = cutCompanionPictures(sheet);
        QCOMPARE(pictures.size(), 4);
        for (int i = 0; i < 4; ++i) {
            QCOMPARE(pictures.at(i).size(), QSize(200, 200));
            QCOMPARE(pictures.at(i).pixelColor(100, 100), colours.at(i));
            QCOMPARE(pictures.at(i).pixelColor(199, 199), colours.at(i));
        }
        QVERIFY(cutCompanionPictures(QImage()).isEmpty());
        QVERIFY(cutCompanionPictures(QImage(1, 1, QImage::Format_RGB32)).isEmpty());
    }

    void textsBuiltFromTheName_data()
    {
        QTest::addColumn<QString>("name");
        QTest::addColumn<QStringList>("texts");
        QTest::newRow("no name") << QString()
                                 << QStringList{"YOUR WORLD OF CODE", "Made by you", "Your treasure shelf", "?"};
        QTest::newRow("name") << "zoë" << QStringList{"zoë’S WORLD OF CODE", "Made by zoë", "zoë’s treasure shelf", "Z"};
        QTest::newRow("longer capital") << "ßam" << QStringList{"ßam’S WORLD OF CODE", "Made by ßam", "ßam’s treasure shelf", "SS"};
        QTest::newRow("accent as a mark") << "e\u0301mile"
                                          << QStringList{"e\u0301mile’S WORLD OF CODE", "Made by e\u0301mile",
                                                         "e\u0301mile’s treasure shelf", "E\u0301"};
    }

    void textsBuiltFromTheName()
    {
        QFETCH(QString, name);
        QFETCH(QStringList, texts);
        Studio &studio = fixture->studio;
        QSignalSpy changed(&studio, &Studio::playerNameChanged);
        if (!name.isEmpty())
            QVERIFY(studio.savePlayerName(name));
        QCOMPARE(changed.count(), name.isEmpty() ? 0 : 1);
        QCOMPARE((QStringList{studio.worldTitle(), studio.galleryTitle(), studio.treasureTitle(), studio.avatarLetter()}),
                 texts);
    }
};

QTEST_GUILESS_MAIN(StartupTest)
#include "tst_startup.moc"
