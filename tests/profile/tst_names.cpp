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

    void characterCounting_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<int>("count");
        QTest::newRow("empty") << QString() << 0;
        QTest::newRow("plain") << "Pip" << 3;
        QTest::newRow("family emoji") << QString::fromUtf8("👩‍👩‍👧‍👦") << 1;
        QTest::newRow("flag") << QString::fromUtf8("🇯🇵") << 1;
        QTest::newRow("combining mark") << QStringLiteral("e\u0301") << 1;
        QTest::newRow("skin tone") << QString::fromUtf8("👋🏽!") << 2;
    }

    void characterCounting()
    {
        QFETCH(QString, text);
        QFETCH(int, count);
        QCOMPARE(characterCount(text), count);
        QCOMPARE(leftCharacters(text, count), text);
    }

    void shownNames_data()
    {
        QTest::addColumn<int>("index");
        QTest::addColumn<QString>("nickname");
        QTest::addColumn<QString>("shown");
        QTest::newRow("default") << 2 << QString() << "Orbit";
        QTest::newRow("nickname") << 0 << "  Sir   Shelly " << "Sir Shelly";
        QTest::newRow("blank nickname") << 1 << "   " << "Peaches";
        QTest::newRow("royal default") << 3 << QString() << "Your Majesty";
        QTest::newRow("beyond the list") << 9 << "Nine" << "Clover";
        QTest::newRow("below the list") << -1 << "Minus" << "Clover";
    }

    void shownNames()
    {
        QFETCH(int, index);
        QFETCH(QString, nickname);
        QFETCH(QString, shown);
        StudioFixture fixture;
        fixture.store.setStringDictionary(QStringLiteral("turtleNames"), {{QString::number(index), nickname}});
        QCOMPARE(fixture.restart()->displayName(index), shown);
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
