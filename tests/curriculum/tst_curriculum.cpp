#include "curriculum/MissionCheck.h"
#include "curriculum/Missions.h"
#include "curriculum/Progress.h"
#include "curriculum/Themes.h"
#include "curriculum/Worlds.h"
#include "language/LogoParser.h"
#include "support/Golden.h"
#include "turtle/Turtle.h"

#include <QRegularExpression>
#include <QTest>

#include <cmath>
#include <numbers>

namespace {

bool passes(int mission, const QString &source)
{
    return missionPasses(mission, simulate(source), missionTarget(mission), source);
}

// The same instructions with every loop and recipe written out.
QString unrolled(const QString &source)
{
    QStringList words;
    for (const Instruction &instruction : LogoParser(source).parse()) {
        words << instruction.name;
        if (instruction.name == u"color")
            words << instruction.word;
        else if (LogoParser::isNumberCommand(instruction.name))
            words << QString::number(instruction.value, 'g', 17);
    }
    return words.join(u' ');
}

Stroke line(double x1, double y1, double x2, double y2)
{
    return Stroke{QPointF(x1, y1), QPointF(x2, y2), QStringLiteral("purple"), 4};
}

// A 100-step stroke leaving (x, y) at the given heading, in turtle degrees.
Stroke heading(double x, double y, double degrees)
{
    const double r = degrees * std::numbers::pi / 180;
    return line(x, y, x + 100 * std::sin(r), y - 100 * std::cos(r));
}

} // namespace

class CurriculumTest : public QObject
{
    Q_OBJECT

private slots:
    void tables()
    {
        QCOMPARE(missions().size(), 30);
        QCOMPARE(worlds().size(), 5);
        QCOMPARE(themes().size(), 6);
        // The welcome screen's first world is the same six missions.
        QCOMPARE(firstMissions().size(), 6);
        for (int i = 0; i < 6; ++i) {
            QCOMPARE(missions().at(i).title, firstMissions().at(i).title);
            QCOMPARE(missions().at(i).hints, firstMissions().at(i).hints);
        }
        for (const Mission &mission : missions())
            QCOMPARE(mission.hints.size(), 2);
        for (int i = 6; i < 30; ++i)
            QCOMPARE(missions().at(i).hints.at(1),
                     QStringLiteral("Here is one way. Read it, then try it:\n") + missions().at(i).solution);
    }

    void texts()
    {
        for (const auto &[actual, expected] : {
                 std::pair(missions().at(3).starter, QStringLiteral("repeat 3 [\n  forward 100\n  right \n]")),
                 std::pair(missions().at(19).starter, QStringLiteral("repeat 6 [\n  repeat 4 [\n\n  ]\n  right 60\n]")),
                 std::pair(worlds().at(worldOf(17)).title, QStringLiteral("Pen Playground")),
                 std::pair(worlds().at(worldOf(24)).title, QStringLiteral("Maker Mountain")),
                 std::pair(themeMenuLabel(themes().at(1), 5), QStringLiteral("Peach sky · 6 badges")),
                 std::pair(themeMenuLabel(themes().at(1), 6), QStringLiteral("Peach sky")),
                 std::pair(rank(30), missions().at(29).prize)})
            QCOMPARE(actual, expected);
    }

    // Each solution passes in any case and nothing else does; after the first world, its first move
    // half a step too long fails; written out without REPEAT it draws the same, but some missions insist on a loop.
    void solutions_data()
    {
        QTest::addColumn<int>("mission");
        for (int i = 0; i < 30; ++i)
            QTest::addRow("%d", i) << i;
    }

    void solutions()
    {
        QFETCH(int, mission);
        const QString solution = missions().at(mission).solution;
        const QList<Stroke> target = missionTarget(mission);
        QVERIFY(!target.isEmpty());
        QVERIFY(passes(mission, solution));
        QVERIFY(passes(mission, solution.toUpper()));
        QVERIFY(!missionPasses(mission, {}, target, solution));
        QVERIFY(!missionPasses(mission, {}, {}, solution)); // before any target exists
        QVERIFY(!passes(mission, solution + QStringLiteral(" forward 1")));
        if (mission < 6)
            return;

        QString longer = solution;
        const QRegularExpressionMatch move = QRegularExpression(QStringLiteral("forward (\\d+)")).match(longer);
        QVERIFY(move.hasMatch());
        longer.replace(move.capturedStart(1), move.capturedLength(1), move.captured(1) + QStringLiteral(".5"));
        QVERIFY(!passes(mission, longer));
        if (mission >= 24) { // these insist on a recipe, so they read the program
            // The run that drew it has already reported its own error; the check just says no.
            QVERIFY(!missionPasses(mission, target, target, solution + QStringLiteral(" forward")));
            return;
        }

        const bool needsLoop = QList<int>{8, 9, 10, 11, 13, 18, 19, 20, 21, 22, 23}.contains(mission);
        const QString written = unrolled(solution);
        QVERIFY(!written.contains(u"repeat"));
        QCOMPARE(simulate(written), target);
        QCOMPARE(passes(mission, written), !needsLoop);
        if (needsLoop)
            QVERIFY(!passes(mission, written + QStringLiteral(" ; repeat")));
    }

    // What the check says of drawings near a mission's goal: "passes", or the first rule broken and
    // how many lines differ. The literal cases are in nearmisses.txt; these are built from solutions.
    void nearMisses_data()
    {
        QTest::addColumn<int>("mission");
        QTest::addColumn<QString>("source");
        QTest::addColumn<QString>("verdict");
        QTest::addColumn<int>("missing");
        QTest::addColumn<int>("extra");
        for (const QStringList &row : goldenRows(QStringLiteral("nearmisses.txt"), 6))
            QTest::newRow(qPrintable(row.at(0))) << row.at(1).toInt() << row.at(2) << row.at(3) << row.at(4).toInt()
                                                 << row.at(5).toInt();
        const auto solution = [](int mission) { return missions().at(mission).solution; };
        QTest::newRow("5 written out") << 5 << unrolled(solution(5)) << "This mission wants a REPEAT loop." << 0 << 0;
        QTest::newRow("colour free where not asked") << 6 << "color red width 9 " + solution(6) << "passes" << 0 << 0;
        QTest::newRow("16 in wrong colours") << 16 << QString(solution(16)).replace(QStringLiteral("pink"), QStringLiteral("red"))
                                             << "A line is the wrong color." << 2 << 2;
        QTest::newRow("petal without any loop") << 27 << "to petal " + QStringLiteral("forward 80 right 120 ").repeated(3) + "end "
                                                         + QStringLiteral("petal right 60 ").repeated(6)
                                                << "This mission wants a REPEAT loop." << 0 << 0;
        QTest::newRow("purple is the pen's own colour") << 29 << QString(solution(29)).remove(QStringLiteral("color purple "))
                                                        << "passes" << 0 << 0;
    }

    void nearMisses()
    {
        QFETCH(int, mission);
        QFETCH(QString, source);
        QFETCH(QString, verdict);
        QFETCH(int, missing);
        QFETCH(int, extra);
        QVERIFY(!simulate(source).isEmpty());
        // The first world judges the shape alone, so it gets no target.
        const QList<Stroke> target = mission < 6 ? QList<Stroke>{} : missionTarget(mission);
        const MissionDifference difference = missionDifference(mission, simulate(source), target, source);
        QCOMPARE(difference.met ? QStringLiteral("passes") : difference.sentence, verdict);
        QCOMPARE(difference.missing.size(), missing);
        QCOMPARE(difference.extra.size(), extra);
    }

    // Point tolerance of the target comparison; joints and turns at their own limits. Both sides of each.
    void tolerances()
    {
        for (const auto &[offset, passing] : {std::pair(0.49, true), std::pair(0.5, false)}) {
            QList<Stroke> drawn = missionTarget(6);
            drawn[1].to += QPointF(offset * 0.6, offset * 0.8);
            QCOMPARE(missionPasses(6, drawn, missionTarget(6), missions().at(6).solution), passing);

            const double gap = offset * 2;
            QCOMPARE(closedContinuity({line(0, 0, 0, -100), line(gap, -100, 100 + gap, -100)}), passing);
            QCOMPARE(closed({line(0, 0, 0, -100), line(0, -100, 0, -gap)}), passing);
            QCOMPARE(closed({line(0, 0, gap, -100), line(gap, -100 - gap, 0, 0)}), passing);

            const QList<Stroke> bend{heading(0, 0, 0), heading(0, -100, 90 + offset)};
            QCOMPARE(turns(bend, 90), passing);
            QCOMPARE(turns(bend, 90 + 2 * offset), passing);
        }
    }

    void helpers()
    {
        QVERIFY(!closed({}));
        QVERIFY(closed({line(5, 5, 5, 5)}));
        QVERIFY(!closed({line(0, 0, 0, -100)}));
        QVERIFY(turns({line(0, 0, 0, -100)}, 33));
        QVERIFY(turns({line(0, 0, 0, 0), line(0, 0, 50, 0)}, 0));
        QVERIFY(!turns({line(0, 0, 0, 0), line(0, 0, 50, 0)}, 90));
        QVERIFY(turns({line(0, 0, 0, -100), line(0, -100, 0, 0)}, 180));
        QVERIFY(!closedContinuity({line(0, 0, 0, -100)}));
        QVERIFY(!closedContinuity({line(0, 0, 0, -100), line(0, -100, 9, -100), line(9, -100, 9, 0)}));

        QVERIFY(usesLoop(QStringLiteral("REPEAT 2[fd 1]")));
        QVERIFY(usesLoop(QStringLiteral("to x\n repeat 2 [fd 1]\nend")));
        QVERIFY(!usesLoop(QStringLiteral("repeated 2")));
    }

    // Open: the first, any passed one, and any right after a passed one (even a stray badge); nothing off the table.
    void openness()
    {
        for (const auto &[completed, mission, open] :
             {std::tuple(QSet<int>{}, 0, true), std::tuple(QSet<int>{5}, 6, true), std::tuple(QSet<int>{5}, 7, false),
              std::tuple(QSet<int>{9}, 9, true), std::tuple(QSet<int>{9}, 8, false), std::tuple(QSet<int>{9}, 10, true),
              std::tuple(QSet<int>{0}, -1, false), std::tuple(QSet<int>{29}, 30, false)})
            QCOMPARE(std::pair(mission, isMissionOpen(mission, completed)), std::pair(mission, open));
    }

    // A new rank every six badges; themes unlock at their own counts. Both sides of each step.
    void badges()
    {
        const QStringList ranks{"Curious Coder", "Shape Explorer", "Pen Artist", "Pattern Pro", "Recipe Maker"};
        for (int badges = 0; badges < 30; ++badges)
            QCOMPARE(std::pair(badges, rank(badges)), std::pair(badges, ranks.at(badges / 6)));
        for (int badges : {0, 7, 30})
            QCOMPARE(experiencePoints(badges), badges * 100);

        for (const auto &[theme, badges, available] :
             {std::tuple(0, 0, true), std::tuple(1, 5, false), std::tuple(1, 6, true), std::tuple(2, 11, false),
              std::tuple(2, 12, true), std::tuple(4, 24, true), std::tuple(5, 29, false), std::tuple(5, 30, true),
              std::tuple(6, 30, false), std::tuple(-1, 30, false)})
            QCOMPARE(std::tuple(theme, badges, isThemeAvailable(theme, badges)), std::tuple(theme, badges, available));
        QCOMPARE(themeUnlockedAt(6), std::optional<int>(1));
        QCOMPARE(themeUnlockedAt(30), std::optional<int>(5));
        QCOMPARE(themeUnlockedAt(7), std::nullopt);
    }
};

QTEST_GUILESS_MAIN(CurriculumTest)
#include "tst_curriculum.moc"
