#include "language/Instruction.h"
#include "language/LogoError.h"
#include "language/LogoParser.h"
#include "support/Golden.h"

#include <QLocale>
#include <QTextBlock>
#include <QTextDocument>
#include <QTest>

#include <clocale>

using namespace Qt::StringLiterals;

namespace {

// The child-facing messages, word for word.
const QString kLong = u"That program is very long. Try a smaller drawing first."_s;
const QString kBadName = u"Give each recipe a new name made of letters, like PETAL."_s;
const QString kFinish = u"Finish this recipe with END before starting another."_s;
const QString kNested = u"Try fewer loops or recipes inside one another."_s;
const QString kTooManySteps = u"Try fewer than 2,000 steps in one run."_s;
const QString kNumber = u"A number goes after that command. Try FORWARD 80."_s;

// count REPEAT 1 loops around inner: the innermost body sits at level count.
QString nestedRepeats(int count, const QString &inner)
{
    return u"repeat 1 [ "_s.repeated(count) + inner + u" ]"_s.repeated(count);
}

// Recipes ra, rb, ... each calling the next `calls` times; the last holds lastBody. Ends with a call of ra,
// so the last body is expanded at level `count`.
QString recipeChain(int count, int calls, const QString &lastBody)
{
    const auto name = [](int i) { return u"r"_s + QChar(u'a' + i); };
    QString text;
    for (int i = 0; i < count; ++i) {
        const QString body = i + 1 < count ? (name(i + 1) + u' ').repeated(calls) : lastBody;
        text += u"to "_s + name(i) + u' ' + body + u" end\n"_s;
    }
    return text + name(0);
}

// Instructions as "name value word, ...", leaving out a zero value and an empty word.
QString render(const QList<Instruction> &instructions)
{
    QStringList parts;
    for (const Instruction &instruction : instructions) {
        QString text = instruction.name;
        if (instruction.value != 0)
            text += u' ' + QString::number(instruction.value, 'g', QLocale::FloatingPointShortest);
        if (!instruction.word.isEmpty())
            text += u' ' + instruction.word;
        parts.append(text);
    }
    return parts.join(u", "_s);
}

struct Outcome
{
    bool failed = false;
    QString message;
    QList<Instruction> instructions;
    SourcePlace place = {};
};

Outcome parseProgram(const QString &text)
{
    LogoParser parser(text);
    try {
        return {false, QString(), parser.parse()};
    } catch (const LogoError &error) {
        // The status line shows errorDescription(), which must be the message itself.
        if (error.errorDescription() != error.message())
            return {true, u"errorDescription() differs from message()"_s, {}};
        return {true, error.message(), {}, error.place()};
    }
}

void ok(const char *name, const QString &program, const QString &instructions)
{
    QTest::newRow(name) << program << instructions << false;
}

void refused(const char *name, const QString &program, const QString &message)
{
    QTest::newRow(name) << program << message << true;
}

// A place as "line:column word", the word cut from the text as the code editor holds it.
QString placeIn(const QString &program, SourcePlace place)
{
    if (!place.isValid())
        return u"nowhere"_s;
    QTextDocument document;
    document.setPlainText(program);
    const QString word = document.findBlockByNumber(place.line).text().mid(place.column, place.length);
    return QString::number(place.line) + u':' + QString::number(place.column) + u' ' + word;
}

} // namespace

class TestLanguage : public QObject
{
    Q_OBJECT

private slots:
    // Reading numbers must not follow the user's locale: every program here is read in a German
    // one, which writes 1,5.
    void initTestCase()
    {
        for (const char *name : {"de_DE.UTF-8", "de_DE.utf8", "de_DE"}) {
            if (std::setlocale(LC_ALL, name))
                break;
        }
        QLocale::setDefault(QLocale(QLocale::German, QLocale::Germany));
    }

    void tokens_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<QString>("tokens");

        QTest::newRow("brackets split words") << u"repeat 4[fd 50 rt 90]rt [[]]x["_s
                                              << u"repeat|4|[|fd|50|rt|90|]|rt|[|[|]|]|x|["_s;
        QTest::newRow("comments") << u"; one\nfd 10;rt 90 [\n;two ; three\nbk 5 ; a ; ] b\nd"_s << u"fd|10|bk|5|d"_s;
        // Every line break ends a comment.
        QTest::newRow("line breaks") << u"a;1\nb;2\rc;3\r\nd;4\ve;5\ff;6\u0085g;7\u2028h;8\u2029i"_s
                                     << u"a|b|c|d|e|f|g|h|i"_s;
        // Unicode white space separates tokens like a plain space; U+001F and U+200B are not white space.
        QTest::newRow("white space")
            << u"  fd\t\t 1   a\u00A0b\u3000c\u1680d\u2000e\u200Af\u202Fg\u205Fh x\u001Fy z\u200Bw"_s
            << u"fd|1|a|b|c|d|e|f|g|h|x\u001Fy|z\u200Bw"_s;
    }

    void tokens()
    {
        QFETCH(QString, text);
        QFETCH(QString, tokens);
        const LogoParser parser(text);
        QCOMPARE(parser.tokens.join(u'|'), tokens);
    }

    // Each row is a program with either its instructions or the message it is refused with, and
    // then, after " @ ", maybe where the word it is about stands; the short ones are in programs.txt.
    void programs_data()
    {
        QTest::addColumn<QString>("program");
        QTest::addColumn<QString>("expected");
        QTest::addColumn<bool>("fails");

        for (const QStringList &row : goldenRows(u"programs.txt"_s, 3)) {
            QVERIFY2(row.at(2).startsWith(u'=') || row.at(2).startsWith(u'!'), qPrintable(row.join(u" | "_s)));
            QTest::newRow(qPrintable(row.at(0))) << row.at(1) << row.at(2).mid(1) << row.at(2).startsWith(u'!');
        }

        const auto list = [](const QString &item, int count) { return (item + u", "_s).repeated(count).chopped(2); };
        ok("63- and 64-character numbers", u"fd "_s + QString(62, u'0') + u"5 fd "_s + QString(63, u'0') + u'5',
           u"forward 5, forward 5"_s);
        refused("not a number 1\\0", u"fd 1\0"_s, kNumber);
        refused("long with a letter at the end", u"fd "_s + QString(100, u'1') + u'x', kNumber);
        ok("repeat 1 and 100", u"repeat 1 [ home ] repeat 100 [ fd 1 ]"_s, u"home, "_s + list(u"forward 1"_s, 100));

        // Token limit: brackets count, comments do not; checked before anything else.
        ok("12000 tokens", u"to a"_s + u" x"_s.repeated(11997) + u" end\n; "_s + u"comment words "_s.repeated(100),
           QString());
        refused("12001 tokens with brackets", u"to a"_s + u" []"_s.repeated(5999) + u" end"_s, kLong);
        refused("long before every other fault", u"] to [ jump"_s + u" jump"_s.repeated(11997), kLong + u" @ 0:59992 jump"_s);

        // Step limits.
        ok("2000 moves", u"fd 1 "_s.repeated(2000), list(u"forward 1"_s, 2000));
        ok("2000 from loops", u"repeat 100 [ fd 1 rt 1 ] "_s.repeated(10), list(u"forward 1, right 1"_s, 1000));
        ok("2000 from a recipe called twice", u"to a "_s + u"pu "_s.repeated(1000) + u"end a a"_s, list(u"penup"_s, 2000));
        refused("2001 steps of every kind", u"fd 1 "_s.repeated(1000) + u"pu "_s.repeated(1000) + u"color red"_s,
                kTooManySteps + u" @ 0:8000 color"_s);
        refused("2001 inside one body", u"repeat 2 [ "_s + u"fd 1 "_s.repeated(2001) + u"]"_s, kTooManySteps);
        refused("2001 through recipe calls", u"to a "_s + u"fd 1 "_s.repeated(1000) + u"end a a a"_s, kTooManySteps);
        refused("step limit before a later fault", u"fd 1 "_s.repeated(2001) + u"jump"_s, kTooManySteps);

        ok("uncalled bodies are not checked",
           u"to a a end to b c end to c b end to d jump fd 99999 repeat 0 ] end to e repeat 2 [ fd 1 end to f "_s
               + u"fd 1 "_s.repeated(3000) + u"end fd 1"_s,
           u"forward 1"_s);
        for (const char *word : {"forward", "back", "right", "left", "width", "color", "penup", "pendown", "home", "clear",
                                 "setheading", "repeat", "to", "end", "fd", "bk", "backward", "rt", "lt", "pu", "pd",
                                 "cs", "setpc", "setpencolor", "setpensize", "seth"})
            refused(word, u"to "_s + QString::fromLatin1(word) + u" fd 1 end"_s, kBadName);
        refused("too deep then nested to", nestedRepeats(12, u"fd 1"_s) + u" to a to b end end"_s, kFinish);

        // Nesting: eleven levels of loops and recipes together.
        ok("11 nested repeats", nestedRepeats(11, u"fd 1"_s), u"forward 1"_s);
        ok("11 levels of recipes", recipeChain(11, 1, u"fd 1"_s), u"forward 1"_s);
        ok("6 loops and 5 recipes", recipeChain(5, 1, u"fd 1"_s).chopped(2) + nestedRepeats(6, u"ra"_s), u"forward 1"_s);
        refused("12 nested repeats", nestedRepeats(12, u"fd 1"_s), kNested + u" @ 0:121 repeat"_s);
        refused("12 levels of recipes", recipeChain(12, 1, u"fd 1"_s), kNested + u" @ 10:6 rl"_s);
        refused("6 loops and 6 recipes", recipeChain(6, 1, u"fd 1"_s).chopped(2) + nestedRepeats(6, u"ra"_s), kNested);
        refused("self call at level 11", u"to a a end "_s + nestedRepeats(10, u"a"_s),
                u"The A recipe calls itself. Try a REPEAT loop instead."_s);
        refused("recipe fine at level 1, too deep at level 10",
                u"to b repeat 1 [ fd 1 ] end b "_s + nestedRepeats(10, u"b"_s), kNested);
        refused("self call would enter level 12", u"to a a end "_s + nestedRepeats(11, u"a"_s), kNested);
        // Eleven recipes, each calling the next ten times, the last drawing nothing: expanding every call
        // one by one would take 10^10 expansions. Then the same chain inside loops, one level left for them.
        ok("call chain drawing nothing", recipeChain(11, 10, QString()), QString());
        ok("call chain drawing nothing, in loops", recipeChain(10, 10, QString()).chopped(2) + u"repeat 100 [ ra ra ] fd 1"_s,
           u"forward 1"_s);
    }

    void programs()
    {
        QFETCH(QString, program);
        QFETCH(QString, expected);
        QFETCH(bool, fails);
        Outcome outcome;
        try {
            outcome = parseProgram(program);
        } catch (...) {
            QFAIL("an error other than LogoError escaped");
        }
        if (fails) {
            QVERIFY2(outcome.failed, qPrintable(u"no error; got "_s + render(outcome.instructions).left(200)));
            QCOMPARE(outcome.message, expected.section(u" @ "_s, 0, 0));
            if (expected.contains(u" @ "_s))
                QCOMPARE(placeIn(program, outcome.place), expected.section(u" @ "_s, 1));
        } else {
            QVERIFY2(!outcome.failed, qPrintable(outcome.message));
            QCOMPARE(render(outcome.instructions), expected);
        }
    }

    // Each row: a program, which instruction to look at, where its word is and, for a recipe's
    // instruction, where the outermost call is. Where errors are is told with the programs above.
    void places_data()
    {
        QTest::addColumn<QString>("program");
        QTest::addColumn<int>("which");
        QTest::addColumn<QString>("place");
        QTest::addColumn<QString>("call");

        const QString breaks = u";x\rfd 1\r\nrt 2\u2029lt 3\u2028pu\vpd\fhome\u0085bk 4"_s;
        QTest::newRow("after a CR") << breaks << 0 << u"1:0 fd"_s << u"nowhere"_s;
        QTest::newRow("CR LF and U+2029 break; these do not") << breaks << 6 << u"3:16 bk"_s << u"nowhere"_s;
        QTest::newRow("comment, upper case") << u"fd 1 ; rt 90 [\n  RT 45 ; x"_s << 1 << u"1:2 RT"_s << u"nowhere"_s;
        const QString recipes = u"to side fd 50 rt 90 end\nto box\n  repeat 4 [ side ]\nend\nrt 10 box box"_s;
        QTest::newRow("recipe in a recipe") << recipes << 8 << u"0:14 rt"_s << u"4:6 box"_s;
        QTest::newRow("second call") << recipes << 9 << u"0:8 fd"_s << u"4:10 box"_s;
        QTest::newRow("surrogate pair") << u"to \U0001D49Cb fd 5 end \U0001D49Cb rt 1"_s << 1 << u"0:20 rt"_s
                                        << u"nowhere"_s;
    }

    void places()
    {
        QFETCH(QString, program);
        QFETCH(int, which);
        QFETCH(QString, place);
        QFETCH(QString, call);
        LogoParser parser(program);
        const QList<Instruction> instructions = parser.parse();
        QCOMPARE(placeIn(program, instructions.at(which).place), place);
        const qint32 callToken = instructions.at(which).callToken;
        QCOMPARE(placeIn(program, callToken < 0 ? SourcePlace{} : parser.places.at(callToken)), call);
    }
};

QTEST_GUILESS_MAIN(TestLanguage)
#include "tst_language.moc"
