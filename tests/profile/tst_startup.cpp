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

using namespace Qt::StringLiterals;

namespace {

QList<qint64> firstMissionsCompleted(int count)
{
    QList<qint64> indices(count);
    std::iota(indices.begin(), indices.end(), 0);
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

    // What start-up makes of stored values, by the properties it shows (the others keep their
    // defaults); the companion and canvas it settles on are what the store holds afterwards.
    void storedValuesAreSanitised_data()
    {
        QTest::addColumn<QVariantMap>("stored");
        QTest::addColumn<QVariantMap>("shown");
        using Map = QVariantMap;
        const QVariantList three{0, 1, 2};
        QVariantList all;
        for (int i = 0; i < 30; ++i)
            all.append(i);
        const auto badges = [](const QList<int> &completed) { return QVariant::fromValue(completed); };
        QTest::newRow("companion past the end, locked") << Map{{"turtle", 7}} << Map{{"turtle", 0}};
        QTest::newRow("companion past the end, royal earned")
            << Map{{"turtle", 7}, {"completed", three}} << Map{{"turtle", 3}, {"completed", badges({0, 1, 2})}};
        QTest::newRow("negative companion") << Map{{"turtle", -2}} << Map{{"turtle", 0}};
        QTest::newRow("companion as text") << Map{{"turtle", "2"}} << Map{{"turtle", 0}};
        QTest::newRow("theme past the end, all earned") << Map{{"theme", 9}, {"completed", all}} << Map{{"theme", 5}};
        QTest::newRow("theme locked") << Map{{"theme", 1}, {"completed", three}} << Map{{"theme", 0}};
        QTest::newRow("indices out of range dropped")
            << Map{{"completed", QVariantList{31, -1, 4, 2}}} << Map{{"completed", badges({2, 4})}};
        QTest::newRow("a text element spoils the array")
            << Map{{"completed", QVariantList{1, "2"}}, {"turtle", 3}} << Map{{"completed", badges({})}, {"turtle", 0}};
        QTest::newRow("completed as text") << Map{{"completed", "0,1,2"}} << Map{{"completed", badges({})}};

        QTest::newRow("blanks around and between")
            << Map{{"playerName", "  Ada   Love "}, {"hasCompletedWelcome", true}}
            << Map{{"playerName", "Ada Love"}, {"welcome", false}, {"message", "Ready when you are, Ada Love."}};
        QTest::newRow("only blanks")
            << Map{{"playerName", "   "}, {"hasCompletedWelcome", true}} << Map{{"playerName", ""}, {"welcome", true}};
        QTest::newRow("never finished the welcome")
            << Map{{"playerName", "Ada"}} << Map{{"welcome", true}, {"message", "Ready when you are, Ada."}};
        QTest::newRow("welcome flag as text")
            << Map{{"playerName", "Ada"}, {"hasCompletedWelcome", "yes"}} << Map{{"playerName", "Ada"}, {"welcome", true}};
        QTest::newRow("nickname") << Map{{"turtleNames", Map{{"0", "Sprout"}}}} << Map{{"turtleName", "Sprout"}};
        QTest::newRow("a number among the nicknames")
            << Map{{"turtleNames", Map{{"0", "Sprout"}, {"1", 5}}}} << Map{{"turtleName", "Clover"}};
        QTest::newRow("player name as a number")
            << Map{{"playerName", 42}, {"hasCompletedWelcome", true}} << Map{{"playerName", ""}, {"welcome", true}};
    }

    void storedValuesAreSanitised()
    {
        QFETCH(QVariantMap, stored);
        QFETCH(QVariantMap, shown);
        for (auto it = stored.cbegin(); it != stored.cend(); ++it)
            QVERIFY(fixture->store.setValue(it.key(), it.value()));
        const auto studio = fixture->restart();
        for (auto it = shown.cbegin(); it != shown.cend(); ++it) {
            QCOMPARE(studio->property(qPrintable(it.key())), it.value());
            if (it.key() == u"turtle" || it.key() == u"theme")
                QCOMPARE(fixture->store.integer(it.key()), it.value().toInt());
        }
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
        // In the store's order.
        const QStringList others{QStringLiteral("Code1"),  QStringLiteral("code"),    QStringLiteral("code1\n"),
                                 QStringLiteral("code1a"), QStringLiteral("codex"),   QStringLiteral("mycode1"),
                                 QStringLiteral("window")};
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

        QCOMPARE(fixture->store.keys(), others);
        QVERIFY(studio.completed().isEmpty());
        QCOMPARE(studio.playerName(), QString());
        QCOMPARE(studio.turtleName(), QStringLiteral("Clover"));
        QCOMPARE(studio.code(), missions().first().starter);
        QCOMPARE(studio.message(), QStringLiteral("Ready for a brand-new adventure."));
        QVERIFY(studio.welcome());
        QCOMPARE(welcome.count(), 1);
        QVERIFY(!studio.resetAfterProfileDismissal());
        QVERIFY(!studio.hasCompletedWelcome());

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

    // A stored value start-up could not use is copied, byte for byte, beside the store before anything
    // replaces it: the companion is written back at start, the progress with the next badge.
    void anUnreadableValueIsKeptBeforeItIsReplaced()
    {
        QVERIFY(fixture->store.setValue(QStringLiteral("turtle"), QStringLiteral("2")));
        QVERIFY(fixture->store.setValue(QStringLiteral("completed"), QStringLiteral("0,1")));
        const auto studio = fixture->restart();
        studio->setCode(missions().first().solution);
        stepToEnd(*studio);
        QCOMPARE(studio->badges(), 1);
        for (const auto &[key, kept] : {std::pair("turtle", "2"), std::pair("completed", "0,1")}) {
            const QString pattern = u"preferences.sqlite.%1.unreadable-*"_s.arg(key);
            const QStringList files = QDir(fixture->folder.path()).entryList({pattern});
            QCOMPARE(files.size(), 1);
            QFile file(fixture->folder.filePath(files.first()));
            QVERIFY(file.open(QIODevice::ReadOnly));
            QCOMPARE(file.readAll(), QByteArray(kept));
        }
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

        // A replay by the named child stays where the child went (the third mission, once open).
        studio->select(2);
        studio->replayWelcome();
        QVERIFY(studio->welcome());
        QVERIFY(!studio->needsIntroduction());
        studio->finishWelcome(2, QStringLiteral("Zoom"), QStringLiteral("Ada B"));
        QCOMPARE(std::pair(studio->mission(), studio->free()), std::pair(completed ? 2 : 0, false));
        QCOMPARE(studio->message(), QStringLiteral("Ada B and Zoom. Let’s make something!"));
    }

    // Blank names and the royal companion before its third badge are refused and change nothing.
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

        fixture->store.setIntegerArray(QStringLiteral("completed"), firstMissionsCompleted(3));
        const auto crowned = fixture->restart();
        QVERIFY(crowned->saveCompanion(Studio::royalCompanion, QStringLiteral("Your Majesty")));
        QCOMPARE(crowned->message(), QStringLiteral("Your Majesty is ready for your next idea."));
        QCOMPARE(fixture->store.stringDictionary(QStringLiteral("turtleNames")),
                 (QMap<QString, QString>{{QStringLiteral("3"), QStringLiteral("Your Majesty")}}));
        QCOMPARE(fixture->store.integer(QStringLiteral("turtle")), 3);
    }

    void companionPicturesAreCutRowByRow()
    {
        const QList<QColor> colours{Qt::red, Qt::green, Qt::blue, Qt::yellow};
        for (const QSize sheetSize : {QSize(800, 800), QSize(641, 403)}) { // even, odd and wide
            QImage sheet(sheetSize, QImage::Format_RGB32);
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
