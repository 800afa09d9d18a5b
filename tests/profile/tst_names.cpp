#include "app/Studio.h"
#include "support/StudioFixture.h"
#include "profile/NameRules.h"

#include <QSignalSpy>
#include <QTest>

class NamesTest : public QObject
{
    Q_OBJECT

private slots:
    void cleaning_data()
    {
        QTest::addColumn<QString>("typed");
        QTest::addColumn<QString>("cleaned");
        QTest::newRow("tab and blanks between words") << "Ada\t  Lovelace" << "Ada Lovelace";
        QTest::newRow("line breaks, no-break and ideographic spaces; blanks around")
            << "   Mo\r\nZi\u2028Ra\u00a0Xi\u3000Yo  " << "Mo Zi Ra Xi Yo";
        QTest::newRow("only blanks") << " \t \n " << "";
        QTest::newRow("only control characters") << "\u0001\u0007\u007f\u200b" << "";
        QTest::newRow("format characters inside a word") << "Ze\u200bn\u00adi" << "Zeni";
        QTest::newRow("30 characters keep 24") << "abcdefghijklmnopqrstuvwxyzAB" << "abcdefghijklmnopqrstuvwx";
        QTest::newRow("cut just after a blank") << "abcdefghijklmnopqrstuvw Xavier" << "abcdefghijklmnopqrstuvw ";
        QTest::newRow("joiners dropped from an emoji sequence")
            << QString::fromUtf8("👩‍👧") << QString::fromUtf8("👩👧");
        QTest::newRow("accents count as part of their letter")
            << QString(24, u'x') + QStringLiteral("e\u0301") << QString(24, u'x');
        QTest::newRow("24 decomposed letters stay whole") << QStringLiteral("e\u0301").repeated(24)
                                                           << QStringLiteral("e\u0301").repeated(24);
        QTest::newRow("flags count one each") << QString::fromUtf8("🇩🇪").repeated(25)
                                              << QString::fromUtf8("🇩🇪").repeated(24);
    }

    void cleaning()
    {
        QFETCH(QString, typed);
        QFETCH(QString, cleaned);
        QCOMPARE(Studio::cleanTurtleName(typed), cleaned);
        QVERIFY(characterCount(Studio::cleanTurtleName(typed)) <= maxNameLength);
    }

    // Flags and combining marks are counted by the cleaning rows.
    void characterCounting()
    {
        for (const auto &[text, count] : {std::pair(QString(), 0), std::pair(QStringLiteral("Pip"), 3),
                                          std::pair(QString::fromUtf8("👩‍👩‍👧‍👦"), 1), std::pair(QString::fromUtf8("👋🏽!"), 2)}) {
            QCOMPARE(characterCount(text), count);
            QCOMPARE(leftCharacters(text, count), text);
        }
    }

    // A nickname, or the default for a blank one; indices off the list get the first default.
    void shownNames()
    {
        for (const auto &[index, nickname, shown] :
             {std::tuple(2, QString(), "Orbit"), std::tuple(0, QStringLiteral("  Sir   Shelly "), "Sir Shelly"),
              std::tuple(1, QStringLiteral("   "), "Peaches"), std::tuple(3, QString(), "Your Majesty"),
              std::tuple(9, QStringLiteral("Nine"), "Clover"), std::tuple(-1, QStringLiteral("Minus"), "Clover")}) {
            StudioFixture fixture;
            fixture.store.setStringDictionary(QStringLiteral("turtleNames"), {{QString::number(index), nickname}});
            QCOMPARE(fixture.restart()->displayName(index), QString::fromUtf8(shown));
        }
    }

    void turtleNameFollowsTheChosenCompanion()
    {
        StudioFixture fixture;
        Studio &studio = fixture.studio;
        QSignalSpy changed(&studio, &Studio::turtleNameChanged);
        QCOMPARE(studio.turtleName(), QStringLiteral("Clover"));
        QVERIFY(studio.saveCompanion(1, QStringLiteral("Peachy")));
        QCOMPARE(studio.turtleName(), QStringLiteral("Peachy"));
        QCOMPARE(changed.count(), 1);
        QVERIFY(studio.saveCompanion(0, QStringLiteral("Clover")));
        QCOMPARE(studio.displayName(1), QStringLiteral("Peachy"));
        QCOMPARE(changed.count(), 2);
        studio.setTurtle(0); // the same companion again changes nothing that is shown
        QCOMPARE(changed.count(), 2);
    }
};

QTEST_GUILESS_MAIN(NamesTest)
#include "tst_names.moc"
