#include "language/Instruction.h"
#include "language/LogoError.h"
#include "language/LogoParser.h"
#include "support/Golden.h"

#include <QLocale>
#include <QTextBlock>
#include <QTextDocument>
#include <QTest>

#include <clocale>
#include <string>

using namespace Qt::StringLiterals;

namespace {

// The child-facing messages, word for word.
const QString kLong = u"That program is very long. Try a smaller drawing first."_s;
const QString kBadName = u"Give each recipe a new name made of letters, like PETAL."_s;
const QString kFinish = u"Finish this recipe with END before starting another."_s;
const QString kNested = u"Try fewer loops or recipes inside one another."_s;
const QString kTooManySteps = u"Try fewer than 2,000 steps in one run."_s;
const QString kNumber = u"A number goes after that command. Try FORWARD 80."_s;

QString callsItself(const QString &name)
{
    return u"The "_s + name + u" recipe calls itself. Try a REPEAT loop instead."_s;
}

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
        return {true, error.message(), {}};
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
    void tokens_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<QString>("tokens");

        QTest::newRow("empty") << QString() << QString();
        QTest::newRow("only comments") << u"; one\n;two ; three"_s << QString();
        QTest::newRow("lower-cased, non-ASCII too") << u"FoRwArD 100 \u00C9TOILE \u0417\u0412\u0415\u0417\u0414\u0410"_s
                                                    << u"forward|100|\u00E9toile|\u0437\u0432\u0435\u0437\u0434\u0430"_s;
        QTest::newRow("brackets split words") << u"repeat 4[fd 50 rt 90]rt [[]]x["_s
                                              << u"repeat|4|[|fd|50|rt|90|]|rt|[|[|]|]|x|["_s;
        QTest::newRow("comments") << u"fd 10;rt 90 [\nbk 5 ; a ; ] b\nd"_s << u"fd|10|bk|5|d"_s;
        QTest::newRow("double quote kept") << u"color \"Red"_s << u"color|\"red"_s;
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

    // Each row is a program with either its instructions or the message it is refused with; the
    // short ones are listed in programs.txt.
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
        ok("63-character number", u"fd "_s + QString(62, u'0') + u'5', u"forward 5"_s);
        ok("64-character number", u"fd "_s + QString(63, u'0') + u'5', u"forward 5"_s);
        refused("not a number 1\\0", u"fd 1\0"_s, kNumber);
        refused("long with a letter at the end", u"fd "_s + QString(100, u'1') + u'x', kNumber);
        ok("repeat 1 and 100", u"repeat 1 [ home ] repeat 100 [ fd 1 ]"_s, u"home, "_s + list(u"forward 1"_s, 100));

        // Token limit: brackets count, comments do not; checked before anything else.
        ok("12000 tokens", u"to a"_s + u" x"_s.repeated(11997) + u" end\n; "_s + u"comment words "_s.repeated(100),
           QString());
        refused("12001 tokens with brackets", u"to a"_s + u" []"_s.repeated(5999) + u" end"_s, kLong);
        refused("long before every other fault", u"] to [ jump"_s + u" jump"_s.repeated(11997), kLong);

        // Step limits.
        ok("2000 moves", u"fd 1 "_s.repeated(2000), list(u"forward 1"_s, 2000));
        ok("2000 from loops", u"repeat 100 [ fd 1 rt 1 ] "_s.repeated(10), list(u"forward 1, right 1"_s, 1000));
        ok("2000 from a recipe called twice", u"to a "_s + u"pu "_s.repeated(1000) + u"end a a"_s, list(u"penup"_s, 2000));
        refused("2001 steps of every kind", u"fd 1 "_s.repeated(1000) + u"pu "_s.repeated(1000) + u"color red"_s,
                kTooManySteps);
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
        refused("12 nested repeats", nestedRepeats(12, u"fd 1"_s), kNested);
        refused("12 nested empty repeats", nestedRepeats(12, QString()), kNested);
        refused("12 levels of recipes", recipeChain(12, 1, u"fd 1"_s), kNested);
        refused("6 loops and 6 recipes", recipeChain(6, 1, u"fd 1"_s).chopped(2) + nestedRepeats(6, u"ra"_s), kNested);
        refused("self call at level 11", u"to a a end "_s + nestedRepeats(10, u"a"_s), callsItself(u"A"_s));
        refused("recipe fine at level 1, too deep at level 10",
                u"to b repeat 1 [ fd 1 ] end b "_s + nestedRepeats(10, u"b"_s), kNested);
        refused("self call would enter level 12", u"to a a end "_s + nestedRepeats(11, u"a"_s), kNested);
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
            QCOMPARE(outcome.message, expected);
        } else {
            QVERIFY2(!outcome.failed, qPrintable(outcome.message));
            QCOMPARE(render(outcome.instructions), expected);
        }
    }

    // Reading numbers must not follow the user's locale (a German one writes 1,5).
    void numbersIgnoreGermanLocale()
    {
        const std::string previousC = std::setlocale(LC_ALL, nullptr);
        const QLocale previousQt;
        for (const char *name : {"de_DE.UTF-8", "de_DE.utf8", "de_DE"}) {
            if (std::setlocale(LC_ALL, name))
                break;
        }
        QLocale::setDefault(QLocale(QLocale::German, QLocale::Germany));
        const Outcome read = parseProgram(u"fd 1.5 rt 0x.8p1 lt .5 width 12.5"_s);
        const Outcome comma = parseProgram(u"fd 1,5"_s);
        std::setlocale(LC_ALL, previousC.c_str());
        QLocale::setDefault(previousQt);

        QVERIFY2(!read.failed, qPrintable(read.message));
        QCOMPARE(render(read.instructions), u"forward 1.5, right 1, left 0.5, width 12.5"_s);
        QVERIFY(comma.failed);
        QCOMPARE(comma.message, kNumber);
    }

    // Eleven recipes, each calling the next ten times, the last drawing nothing: expanding every call
    // one by one would take 10^10 expansions.
    void callChainThatDrawsNothingFinishes()
    {
        const Outcome outcome = parseProgram(recipeChain(11, 10, QString()));
        QVERIFY2(!outcome.failed, qPrintable(outcome.message));
        QVERIFY(outcome.instructions.isEmpty());

        // The same chain called from inside loops, one level left for them.
        const Outcome looped = parseProgram(recipeChain(10, 10, QString()).chopped(2) + u"repeat 100 [ ra ra ] fd 1"_s);
        QVERIFY2(!looped.failed, qPrintable(looped.message));
        QCOMPARE(render(looped.instructions), u"forward 1"_s);
    }

    // Each row: a program, which instruction to look at (-1: the error), where its word is,
    // and (for a recipe's instruction) where the outermost call is, or the message.
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
        QTest::newRow("nested repeats") << u"repeat 2 [\n  repeat 3 [ fd 10 ]\n  rt 90 ]"_s << 6 << u"1:13 fd"_s
                                        << u"nowhere"_s;
        const QString recipes = u"to side fd 50 rt 90 end\nto box\n  repeat 4 [ side ]\nend\nrt 10 box box"_s;
        QTest::newRow("recipe in a recipe") << recipes << 8 << u"0:14 rt"_s << u"4:6 box"_s;
        QTest::newRow("second call") << recipes << 9 << u"0:8 fd"_s << u"4:10 box"_s;
        QTest::newRow("surrogate pair") << u"to \U0001D49Cb fd 5 end \U0001D49Cb rt 1"_s << 1 << u"0:20 rt"_s
                                        << u"nowhere"_s;

        // Every message of the catalogue (its opening words), with the word it is about.
        const auto error = [](const char *name, const QString &program, const QString &place, const char *message) {
            QTest::newRow(name) << program << -1 << place << QString::fromUtf8(message);
        };
        error("too long", u"fd 1 "_s.repeated(6000) + u"fd"_s, u"0:30000 fd"_s, "That program is very long");
        error("to in a loop", u"repeat 2 [ to x"_s, u"0:11 to"_s, "Put TO name");
        error("bad name", u"to fd2 end"_s, u"0:3 fd2"_s, "Give each recipe");
        error("to in a recipe", u"to a fd 1 to b end"_s, u"0:10 to"_s, "Finish this recipe");
        error("missing end", u"fd 1\nto Petal fd 1"_s, u"1:3 Petal"_s, "Add END to finish your PETAL");
        error("too deep", nestedRepeats(12, u"fd 1"_s), u"0:121 repeat"_s, "Try fewer loops");
        error("too deep by a call", u"to a fd 1 end "_s + nestedRepeats(11, u"a"_s), u"0:135 a"_s, "Try fewer loops");
        error("unclosed", u"fd 1 repeat 2 [ fd 1"_s, u"0:5 repeat"_s, "Your REPEAT loop needs");
        error("stray bracket", u"fd 1 ]"_s, u"0:5 ]"_s, "This ] needs");
        error("repeat count", u"repeat 2.5 [ fd 1 ]"_s, u"0:7 2.5"_s, "Try a whole REPEAT");
        error("no bracket", u"repeat 2 fd 1"_s, u"0:9 fd"_s, "Add [ after");
        error("no bracket at the end", u"repeat 2"_s, u"0:7 2"_s, "Add [ after");
        error("lots of steps", u"repeat 100 [ repeat 100 [ fd 1 ] ]"_s, u"0:7 100"_s, "That's a lot of steps");
        error("too many steps", u"fd 1 "_s.repeated(2001), u"0:10000 fd"_s, "Try fewer than 2,000");
        error("calls itself", u"to a b end to b a end\na"_s, u"0:16 a"_s, "The A recipe calls itself");
        error("not a number", u"fd jump"_s, u"0:3 jump"_s, "A number goes");
        error("no number", u"rt 1 fd"_s, u"0:5 fd"_s, "A number goes");
        error("out of range", u"width 21"_s, u"0:6 21"_s, "Use distances");
        error("no colour", u"rt 1 color"_s, u"0:5 color"_s, "Give COLOR a name");
        error("unknown colour", u"color \"Teal"_s, u"0:6 \"Teal"_s, "Try pink");
        error("unknown word, longer in lower case", u"fd 1 \u0130x"_s, u"0:5 \u0130x"_s, "I don't know \u2018i\u0307x\u2019");
        error("unknown word in a recipe", u"to a\n jump end a"_s, u"1:1 jump"_s, "I don't know \u2018jump\u2019");
    }

    void places()
    {
        QFETCH(QString, program);
        QFETCH(int, which);
        QFETCH(QString, place);
        QFETCH(QString, call);
        LogoParser parser(program);
        try {
            const QList<Instruction> instructions = parser.parse();
            QVERIFY2(which >= 0, "no error");
            QCOMPARE(placeIn(program, instructions.at(which).place), place);
            const qint32 callToken = instructions.at(which).callToken;
            QCOMPARE(placeIn(program, callToken < 0 ? SourcePlace{} : parser.places.at(callToken)), call);
        } catch (const LogoError &error) {
            QVERIFY2(error.message().startsWith(call), qPrintable(error.message()));
            QCOMPARE(placeIn(program, error.place()), place);
        }
    }
};

QTEST_GUILESS_MAIN(TestLanguage)
#include "tst_language.moc"
