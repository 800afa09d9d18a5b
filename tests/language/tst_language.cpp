#include "language/Instruction.h"
#include "language/LogoError.h"
#include "language/LogoParser.h"

#include <QLocale>
#include <QTest>

#include <clocale>
#include <cmath>
#include <string>

namespace {

// The child-facing messages, word for word.
const QString kLong = QStringLiteral("That program is very long. Try a smaller drawing first.");
const QString kToOutside = QStringLiteral("Put TO name \u2026 END outside your loops.");
const QString kBadName = QStringLiteral("Give each recipe a new name made of letters, like PETAL.");
const QString kFinish = QStringLiteral("Finish this recipe with END before starting another.");
const QString kNested = QStringLiteral("Try fewer loops or recipes inside one another.");
const QString kUnclosed = QStringLiteral("Your REPEAT loop needs a closing ].");
const QString kStray = QStringLiteral("This ] needs a matching [ after REPEAT.");
const QString kRepeatCount = QStringLiteral("Try a whole REPEAT number from 1 to 100.");
const QString kRepeatBracket = QStringLiteral("Add [ after your REPEAT number, and ] at the end.");
const QString kLotsOfSteps = QStringLiteral("That's a lot of steps! Try a smaller REPEAT number.");
const QString kTooManySteps = QStringLiteral("Try fewer than 2,000 steps in one run.");
const QString kNumber = QStringLiteral("A number goes after that command. Try FORWARD 80.");
const QString kRange = QStringLiteral("Use distances and turns up to 10,000, and widths from 1 to 20.");
const QString kColorMissing = QStringLiteral("Give COLOR a name, like COLOR pink.");
const QString kColorUnknown = QStringLiteral("Try pink, purple, blue, green, orange, yellow, red, white, or black.");

QString addEnd(const QString &upperName)
{
    return QStringLiteral("Add END to finish your ") + upperName + QStringLiteral(" recipe.");
}

QString callsItself(const QString &upperName)
{
    return QStringLiteral("The ") + upperName + QStringLiteral(" recipe calls itself. Try a REPEAT loop instead.");
}

QString unknown(const QString &token)
{
    return QStringLiteral("I don't know \u2018") + token
        + QStringLiteral("\u2019 yet. Check the command guide or define it with TO \u2026 END.");
}

QString times(const QString &piece, int count)
{
    return piece.repeated(count);
}

// count REPEAT 1 loops around inner: the innermost body sits at level count.
QString nestedRepeats(int count, const QString &inner)
{
    return times(QStringLiteral("repeat 1 [ "), count) + inner + times(QStringLiteral(" ]"), count);
}

QString recipeName(int i)
{
    return QStringLiteral("r") + QChar(u'a' + i);
}

// Recipes ra, rb, ... each calling the next `calls` times; the last holds lastBody. Ends with a call of ra,
// so the last body is expanded at level `count`.
QString recipeChain(int count, int calls, const QString &lastBody)
{
    QString text;
    for (int i = 0; i < count; ++i) {
        const QString body = i + 1 < count ? times(recipeName(i + 1) + u' ', calls) : lastBody;
        text += QStringLiteral("to ") + recipeName(i) + u' ' + body + QStringLiteral(" end\n");
    }
    return text + recipeName(0);
}

QString formatNumber(double value)
{
    return QString::number(value, 'g', QLocale::FloatingPointShortest);
}

// One instruction as "name value word", leaving out a zero value and an empty word.
QString render(const Instruction &instruction)
{
    QString text = instruction.name;
    if (instruction.value != 0)
        text += u' ' + formatNumber(instruction.value);
    if (!instruction.word.isEmpty())
        text += u' ' + instruction.word;
    return text;
}

QString render(const QList<Instruction> &instructions)
{
    QStringList parts;
    for (const Instruction &instruction : instructions)
        parts.append(render(instruction));
    return parts.join(QStringLiteral(", "));
}

QString renderProcedures(const QHash<QString, QStringList> &procedures)
{
    QStringList names = procedures.keys();
    names.sort();
    QStringList parts;
    for (const QString &name : names)
        parts.append(name + u'=' + procedures.value(name).join(u' '));
    return parts.join(u';');
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
            return {true, QStringLiteral("errorDescription() differs from message()"), {}};
        return {true, error.message(), {}};
    }
}

// Switches the C library and Qt to German number conventions for one scope.
class GermanLocale
{
public:
    GermanLocale()
        : m_previousC(std::setlocale(LC_ALL, nullptr))
        , m_previousQt(QLocale())
    {
        for (const char *name : {"de_DE.UTF-8", "de_DE.utf8", "de_DE"}) {
            if (std::setlocale(LC_ALL, name)) {
                m_switchedC = true;
                break;
            }
        }
        QLocale::setDefault(QLocale(QLocale::German, QLocale::Germany));
    }
    ~GermanLocale()
    {
        std::setlocale(LC_ALL, m_previousC.c_str());
        QLocale::setDefault(m_previousQt);
    }
    bool switchedC() const { return m_switchedC; }

private:
    std::string m_previousC;
    QLocale m_previousQt;
    bool m_switchedC = false;
};

} // namespace

class TestLanguage : public QObject
{
    Q_OBJECT

private slots:
    void tokens_data();
    void tokens();
    void instructions_data();
    void instructions();
    void instructionsUnderGermanLocale_data();
    void instructionsUnderGermanLocale();
    void errors_data();
    void errors();
    void numbers_data();
    void numbers();
    void numbersUnderGermanLocale_data();
    void numbersUnderGermanLocale();
    void parserState_data();
    void parserState();
    void callChainThatDrawsNothingFinishes();

private:
    void checkNumber();
};

void TestLanguage::tokens_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("tokens");

    QTest::newRow("empty") << QString() << QString();
    QTest::newRow("only comments") << QStringLiteral("; one\n;two ; three") << QString();
    QTest::newRow("lower-cased") << QStringLiteral("FoRwArD 100 COLOR Pink") << QStringLiteral("forward|100|color|pink");
    QTest::newRow("non-ASCII lower-cased") << QStringLiteral("\u00C9TOILE \u0417\u0412\u0415\u0417\u0414\u0410")
                                           << QStringLiteral("\u00E9toile|\u0437\u0432\u0435\u0437\u0434\u0430");
    QTest::newRow("brackets without spaces") << QStringLiteral("repeat 4[fd 50 rt 90]rt 3")
                                             << QStringLiteral("repeat|4|[|fd|50|rt|90|]|rt|3");
    QTest::newRow("bracket runs") << QStringLiteral("[[]]x[") << QStringLiteral("[|[|]|]|x|[");
    QTest::newRow("comment to end of line") << QStringLiteral("fd 10 ; rt 90 [\nbk 5") << QStringLiteral("fd|10|bk|5");
    QTest::newRow("comment glued to a token") << QStringLiteral("fd 10;rt 90\nlt 1") << QStringLiteral("fd|10|lt|1");
    QTest::newRow("second semicolon in comment") << QStringLiteral("a ; b ; c\nd") << QStringLiteral("a|d");
    QTest::newRow("bracket in comment ignored") << QStringLiteral("repeat 2 [ fd 1 ; ] rt\n]")
                                                << QStringLiteral("repeat|2|[|fd|1|]");
    QTest::newRow("double quote kept") << QStringLiteral("color \"Red") << QStringLiteral("color|\"red");
    QTest::newRow("tabs and runs of spaces") << QStringLiteral("  fd\t\t 10   ") << QStringLiteral("fd|10");

    // Each line break ends a comment.
    const QList<std::pair<const char *, QString>> breaks{
        {"line feed", QStringLiteral("\n")},
        {"carriage return", QStringLiteral("\r")},
        {"CR LF", QStringLiteral("\r\n")},
        {"vertical tab", QStringLiteral("\v")},
        {"form feed", QStringLiteral("\f")},
        {"next line U+0085", QString(QChar(0x0085))},
        {"line separator U+2028", QString(QChar(0x2028))},
        {"paragraph separator U+2029", QString(QChar(0x2029))},
    };
    for (const auto &[name, lineBreak] : breaks)
        QTest::newRow(name) << QStringLiteral("fd 1 ; note") + lineBreak + QStringLiteral("fd 2")
                            << QStringLiteral("fd|1|fd|2");

    // Unicode white space separates tokens like a plain space.
    const QList<std::pair<const char *, char16_t>> spaces{
        {"no-break space U+00A0", 0x00A0}, {"ideographic space U+3000", 0x3000},
        {"ogham space U+1680", 0x1680},   {"en quad U+2000", 0x2000},
        {"em space U+2003", 0x2003},      {"hair space U+200A", 0x200A},
        {"narrow no-break U+202F", 0x202F}, {"math space U+205F", 0x205F},
    };
    for (const auto &[name, space] : spaces)
        QTest::newRow(name) << QStringLiteral("fd") + QChar(space) + QStringLiteral("100") << QStringLiteral("fd|100");
    QTest::newRow("unit separator is not white space") << QStringLiteral("fd") + QChar(0x1F) + QStringLiteral("100")
                                                       << QStringLiteral("fd") + QChar(0x1F) + QStringLiteral("100");
    QTest::newRow("zero-width space is not white space") << QStringLiteral("fd\u200B100") << QStringLiteral("fd\u200B100");
}

void TestLanguage::tokens()
{
    QFETCH(QString, text);
    QFETCH(QString, tokens);
    const LogoParser parser(text);
    QCOMPARE(parser.tokens.join(u'|'), tokens);
    QCOMPARE(parser.index, 0);
    QVERIFY(parser.procedures.isEmpty());
    QVERIFY(parser.executableTokens.isEmpty());
}

void TestLanguage::instructions_data()
{
    QTest::addColumn<QString>("program");
    QTest::addColumn<QString>("expected");

    const QString square = times(QStringLiteral("forward 50, right 90, "), 4).chopped(2);

    QTest::newRow("empty") << QString() << QString();
    QTest::newRow("white space only") << QStringLiteral(" \n\t \r\n ") << QString();
    QTest::newRow("comments only") << QStringLiteral("; draw later\n   ; fd 100") << QString();
    QTest::newRow("forward") << QStringLiteral("forward 100") << QStringLiteral("forward 100");
    QTest::newRow("every command") << QStringLiteral("forward 1 back 2 right 3 left 4 setheading 5 width 6 color green "
                                                     "penup pendown home clear")
                                   << QStringLiteral("forward 1, back 2, right 3, left 4, setheading 5, width 6, "
                                                     "color green, penup, pendown, home, clear");
    QTest::newRow("aliases") << QStringLiteral("fd 1 bk 2 backward 3 rt 4 lt 5 pu pd cs setpc red setpencolor blue "
                                               "setpensize 3 seth 45")
                             << QStringLiteral("forward 1, back 2, back 3, right 4, left 5, penup, pendown, clear, "
                                               "color red, color blue, width 3, setheading 45");
    QTest::newRow("upper case") << QStringLiteral("FD 100 RT 90 COLOR PINK") << QStringLiteral("forward 100, right 90, color pink");
    QTest::newRow("mixed case") << QStringLiteral("Forward 100 Color Pink") << QStringLiteral("forward 100, color pink");
    QTest::newRow("negative and fractional") << QStringLiteral("fd -50 rt 2.5 lt -0.25 seth -90")
                                             << QStringLiteral("forward -50, right 2.5, left -0.25, setheading -90");
    QTest::newRow("line break between command and number") << QStringLiteral("fd\n100") << QStringLiteral("forward 100");
    QTest::newRow("colour with a leading quote") << QStringLiteral("color \"red") << QStringLiteral("color red");
    QTest::newRow("colour with quotes around") << QStringLiteral("color \"\"blue\"") << QStringLiteral("color blue");
    QTest::newRow("every colour") << QStringLiteral("color pink color purple color blue color green color orange "
                                                    "color yellow color white color black color red")
                                  << QStringLiteral("color pink, color purple, color blue, color green, color orange, "
                                                    "color yellow, color white, color black, color red");

    QTest::newRow("repeat without spaces") << QStringLiteral("repeat 4[fd 50 rt 90]") << square;
    QTest::newRow("nested repeat")
        << QStringLiteral("repeat 2 [ repeat 3 [ fd 1 ] rt 90 ]")
        << QStringLiteral("forward 1, forward 1, forward 1, right 90, forward 1, forward 1, forward 1, right 90");
    QTest::newRow("empty repeat body") << QStringLiteral("repeat 5 [ ] fd 1") << QStringLiteral("forward 1");
    QTest::newRow("repeat 100") << QStringLiteral("repeat 100 [ fd 1 ]") << times(QStringLiteral("forward 1, "), 100).chopped(2);
    QTest::newRow("repeat 1e2") << QStringLiteral("repeat 1e2 [ pu ]") << times(QStringLiteral("penup, "), 100).chopped(2);
    QTest::newRow("repeat 1") << QStringLiteral("repeat 1 [ home ]") << QStringLiteral("home");
    QTest::newRow("repeat 3.0") << QStringLiteral("repeat 3.0 [ pd ]") << QStringLiteral("pendown, pendown, pendown");
    QTest::newRow("repeat 0x3") << QStringLiteral("repeat 0x3 [ pd ]") << QStringLiteral("pendown, pendown, pendown");
    QTest::newRow("11 nested repeats") << nestedRepeats(11, QStringLiteral("fd 1")) << QStringLiteral("forward 1");

    QTest::newRow("distance 10000") << QStringLiteral("fd 10000 bk -10000 rt 10000 lt -10000 seth 10000")
                                    << QStringLiteral("forward 10000, back -10000, right 10000, left -10000, setheading 10000");
    QTest::newRow("width 1 and 20") << QStringLiteral("width 1 width 20 setpensize 12.5")
                                    << QStringLiteral("width 1, width 20, width 12.5");

    QTest::newRow("12000 tokens") << QStringLiteral("to a") + times(QStringLiteral(" x"), 11997)
            + QStringLiteral(" end\n; ") + times(QStringLiteral("comment words "), 100)
                                  << QString();
    QTest::newRow("12000 tokens with brackets") << QStringLiteral("to a") + times(QStringLiteral(" []"), 5998)
            + QStringLiteral(" x end")
                                                << QString();
    QTest::newRow("2000 moves") << times(QStringLiteral("fd 1 "), 2000) << times(QStringLiteral("forward 1, "), 2000).chopped(2);
    QTest::newRow("2000 from loops") << times(QStringLiteral("repeat 100 [ fd 1 rt 1 ] "), 10)
                                     << times(QStringLiteral("forward 1, right 1, "), 1000).chopped(2);
    QTest::newRow("2000 from a recipe called twice")
        << QStringLiteral("to a ") + times(QStringLiteral("pu "), 1000) + QStringLiteral("end a a")
        << times(QStringLiteral("penup, "), 2000).chopped(2);
    QTest::newRow("repeat filling to 2000 exactly") << QStringLiteral("fd 1 repeat 1 [ ") + times(QStringLiteral("pd "), 1999)
            + QStringLiteral("]")
                                                    << QStringLiteral("forward 1, ") + times(QStringLiteral("pendown, "), 1999).chopped(2);

    // Recipes.
    QTest::newRow("recipe before use") << QStringLiteral("to square repeat 4 [fd 50 rt 90] end square square")
                                       << square + QStringLiteral(", ") + square;
    QTest::newRow("recipe after use") << QStringLiteral("square square to square repeat 4 [fd 50 rt 90] end")
                                      << square + QStringLiteral(", ") + square;
    QTest::newRow("recipe between uses") << QStringLiteral("a to a fd 1 end a") << QStringLiteral("forward 1, forward 1");
    QTest::newRow("mixed-case recipe name") << QStringLiteral("to Petal fd 1 End PETAL petal PeTaL")
                                            << QStringLiteral("forward 1, forward 1, forward 1");
    QTest::newRow("accented recipe name") << QStringLiteral("to \u00E9toile fd 1 end \u00C9TOILE")
                                          << QStringLiteral("forward 1");
    QTest::newRow("decomposed accent in a name") << QStringLiteral("to e\u0301toile fd 1 end e\u0301toile")
                                                 << QStringLiteral("forward 1");
    QTest::newRow("Cyrillic recipe name")
        << QStringLiteral("to \u0437\u0432\u0435\u0437\u0434\u0430 rt 1 end \u0417\u0432\u0435\u0437\u0434\u0430")
        << QStringLiteral("right 1");
    QTest::newRow("recipe name beyond the BMP") << QStringLiteral("to \U00010400 fd 3 end \U00010428")
                                                << QStringLiteral("forward 3");
    QTest::newRow("CJK recipe name") << QStringLiteral("to \u661F fd 2 end \u661F") << QStringLiteral("forward 2");
    QTest::newRow("recipe calls a later recipe") << QStringLiteral("to a b b end to b fd 1 end a")
                                                 << QStringLiteral("forward 1, forward 1");
    QTest::newRow("recipe inside repeat") << QStringLiteral("repeat 3 [ tri ] to tri fd 1 rt 120 end")
                                          << times(QStringLiteral("forward 1, right 120, "), 3).chopped(2);
    QTest::newRow("same recipe from two callers") << QStringLiteral("to b fd 1 end to a b end to c b a end c")
                                                  << QStringLiteral("forward 1, forward 1");
    QTest::newRow("empty recipe") << QStringLiteral("to nothing end nothing fd 1 nothing") << QStringLiteral("forward 1");
    QTest::newRow("recipe after a closed loop") << QStringLiteral("repeat 2 [ fd 1 ] to a rt 1 end a")
                                                << QStringLiteral("forward 1, forward 1, right 1");
    QTest::newRow("brackets in a body do not count") << QStringLiteral("to a repeat 2 [ end to b fd 1 end b")
                                                     << QStringLiteral("forward 1");
    QTest::newRow("stray ] in a body does not count") << QStringLiteral("to a ] end to b fd 1 end b")
                                                      << QStringLiteral("forward 1");
    QTest::newRow("uncalled self recursion") << QStringLiteral("to a a end fd 1") << QStringLiteral("forward 1");
    QTest::newRow("uncalled mutual recursion") << QStringLiteral("to a b end to b a end fd 1") << QStringLiteral("forward 1");
    QTest::newRow("uncalled faulty body") << QStringLiteral("to a jump fd 99999 repeat 0 ] end fd 1")
                                          << QStringLiteral("forward 1");
    QTest::newRow("uncalled unclosed body") << QStringLiteral("to a repeat 2 [ fd 1 end fd 1") << QStringLiteral("forward 1");
    QTest::newRow("uncalled huge body") << QStringLiteral("to a ") + times(QStringLiteral("fd 1 "), 3000) + QStringLiteral("end")
                                        << QString();
    QTest::newRow("11 levels of recipes") << recipeChain(11, 1, QStringLiteral("fd 1")) << QStringLiteral("forward 1");
    QTest::newRow("6 loops and 5 recipes")
        << recipeChain(5, 1, QStringLiteral("fd 1")).chopped(2) + nestedRepeats(6, QStringLiteral("ra"))
        << QStringLiteral("forward 1");
}

void TestLanguage::instructions()
{
    QFETCH(QString, program);
    QFETCH(QString, expected);
    const Outcome outcome = parseProgram(program);
    QVERIFY2(!outcome.failed, qPrintable(outcome.message));
    QCOMPARE(render(outcome.instructions), expected);
}

void TestLanguage::instructionsUnderGermanLocale_data()
{
    instructions_data();
}

void TestLanguage::instructionsUnderGermanLocale()
{
    const GermanLocale german;
    instructions();
}

void TestLanguage::errors_data()
{
    QTest::addColumn<QString>("program");
    QTest::addColumn<QString>("message");

    // Token limit: brackets count, comments do not; checked before anything else.
    QTest::newRow("12001 tokens") << QStringLiteral("to a") + times(QStringLiteral(" x"), 11998) + QStringLiteral(" end")
                                  << kLong;
    QTest::newRow("12001 tokens with brackets") << QStringLiteral("to a") + times(QStringLiteral(" []"), 5999)
            + QStringLiteral(" end")
                                                << kLong;
    QTest::newRow("long before every other fault") << QStringLiteral("] to [ jump") + times(QStringLiteral(" jump"), 11997)
                                                   << kLong;

    // Recipe definitions.
    QTest::newRow("to inside repeat") << QStringLiteral("repeat 2 [ to a fd 1 end ]") << kToOutside;
    QTest::newRow("to inside repeat without spaces") << QStringLiteral("repeat 2[to a fd 1 end]") << kToOutside;
    QTest::newRow("to after stray ]") << QStringLiteral("fd 1 ] to a fd 1 end") << kToOutside;
    QTest::newRow("to after open [") << QStringLiteral("[ to a end") << kToOutside;
    QTest::newRow("to alone") << QStringLiteral("to") << kToOutside;
    QTest::newRow("to last") << QStringLiteral("fd 10 to") << kToOutside;
    QTest::newRow("to last after a recipe") << QStringLiteral("to a fd 1 end to") << kToOutside;
    QTest::newRow("to inside brackets before a bad name") << QStringLiteral("[ to 5") << kToOutside;

    const QStringList builtins{"forward", "back", "right", "left", "width", "color", "penup",
                               "pendown", "home", "clear", "setheading", "repeat", "to", "end"};
    for (const QString &word : builtins)
        QTest::newRow(qPrintable(QStringLiteral("name is builtin ") + word))
            << QStringLiteral("to ") + word + QStringLiteral(" fd 1 end") << kBadName;
    const QStringList aliases{"fd", "bk", "backward", "rt", "lt", "pu", "pd", "cs", "setpc", "setpencolor", "setpensize", "seth"};
    for (const QString &word : aliases)
        QTest::newRow(qPrintable(QStringLiteral("name is alias ") + word))
            << QStringLiteral("to ") + word + QStringLiteral(" fd 1 end") << kBadName;
    QTest::newRow("upper-case builtin name") << QStringLiteral("TO Forward fd 1 END") << kBadName;
    QTest::newRow("name with digit") << QStringLiteral("to square2 fd 1 end") << kBadName;
    QTest::newRow("name with a non-Latin digit") << QStringLiteral("to petal\u0663 fd 1 end") << kBadName;
    QTest::newRow("name is a number") << QStringLiteral("to 5 fd 1 end") << kBadName;
    QTest::newRow("name with underscore") << QStringLiteral("to pet_al fd 1 end") << kBadName;
    QTest::newRow("name with hyphen") << QStringLiteral("to pet-al fd 1 end") << kBadName;
    QTest::newRow("name with quote") << QStringLiteral("to \"petal fd 1 end") << kBadName;
    QTest::newRow("name is a bracket") << QStringLiteral("to [ fd 1 ] end") << kBadName;
    QTest::newRow("name defined twice") << QStringLiteral("to a fd 1 end to a rt 1 end") << kBadName;
    QTest::newRow("name defined twice in other case") << QStringLiteral("to petal fd 1 end to PETAL rt 1 end") << kBadName;
    QTest::newRow("duplicate before missing end") << QStringLiteral("to a end to a fd 1") << kBadName;
    QTest::newRow("bad name before missing end") << QStringLiteral("to fd") << kBadName;

    QTest::newRow("to inside a body") << QStringLiteral("to a fd 1 to b fd 1 end end") << kFinish;
    QTest::newRow("to right after the name") << QStringLiteral("to a to") << kFinish;

    QTest::newRow("missing end") << QStringLiteral("to petal fd 10") << addEnd(QStringLiteral("PETAL"));
    QTest::newRow("nothing after the name") << QStringLiteral("to Petal") << addEnd(QStringLiteral("PETAL"));
    QTest::newRow("missing end, accented") << QStringLiteral("to \u00E9toile fd 1") << addEnd(QStringLiteral("\u00C9TOILE"));
    QTest::newRow("missing end, Cyrillic") << QStringLiteral("to \u0437\u0432\u0435\u0437\u0434\u0430")
                                           << addEnd(QStringLiteral("\u0417\u0412\u0415\u0417\u0414\u0410"));
    QTest::newRow("end hidden in a comment") << QStringLiteral("to a fd 1 ; end") << addEnd(QStringLiteral("A"));

    // Definition faults win over expansion faults met earlier in the text.
    QTest::newRow("unknown word then to in loop") << QStringLiteral("jump repeat 2 [ to a end ]") << kToOutside;
    QTest::newRow("range fault then bad name") << QStringLiteral("fd 10001 to 5 end") << kBadName;
    QTest::newRow("unknown word then missing end") << QStringLiteral("jump to a fd 1") << addEnd(QStringLiteral("A"));
    QTest::newRow("stray ] then nested to") << QStringLiteral("] to a to b end") << kToOutside;
    QTest::newRow("too deep then nested to") << nestedRepeats(12, QStringLiteral("fd 1")) + QStringLiteral(" to a to b end end")
                                             << kFinish;
    QTest::newRow("recursion then bad name") << QStringLiteral("to a a end a to a end") << kBadName;

    // Nesting.
    QTest::newRow("12 nested repeats") << nestedRepeats(12, QStringLiteral("fd 1")) << kNested;
    QTest::newRow("12 nested empty repeats") << nestedRepeats(12, QString()) << kNested;
    QTest::newRow("12 levels of recipes") << recipeChain(12, 1, QStringLiteral("fd 1")) << kNested;
    QTest::newRow("12 levels of empty recipes") << recipeChain(12, 1, QString()) << kNested;
    QTest::newRow("6 loops and 6 recipes")
        << recipeChain(6, 1, QStringLiteral("fd 1")).chopped(2) + nestedRepeats(6, QStringLiteral("ra")) << kNested;
    QTest::newRow("self call at level 11") << QStringLiteral("to a a end ") + nestedRepeats(10, QStringLiteral("a"))
                                           << callsItself(QStringLiteral("A"));
    QTest::newRow("recipe fine at level 1, too deep at level 10")
        << QStringLiteral("to b repeat 1 [ fd 1 ] end b ") + nestedRepeats(10, QStringLiteral("b")) << kNested;
    QTest::newRow("self call would enter level 12") << QStringLiteral("to a a end ") + nestedRepeats(11, QStringLiteral("a"))
                                                    << kNested;

    // Brackets.
    QTest::newRow("unclosed repeat") << QStringLiteral("repeat 2 [ fd 1") << kUnclosed;
    QTest::newRow("unclosed outer repeat") << QStringLiteral("repeat 2 [ fd 1 repeat 3 [ rt 1 ]") << kUnclosed;
    QTest::newRow("unclosed repeat in a called body") << QStringLiteral("to a repeat 2 [ fd 1 end a") << kUnclosed;
    QTest::newRow("bracket closed only outside the body") << QStringLiteral("to a repeat 2 [ fd 1 end a ]") << kUnclosed;
    QTest::newRow("stray ] alone") << QStringLiteral("]") << kStray;
    QTest::newRow("stray ] after commands") << QStringLiteral("fd 1 ]") << kStray;
    QTest::newRow("one ] too many") << QStringLiteral("repeat 2 [ fd 1 ] ]") << kStray;
    QTest::newRow("stray ] in a called body") << QStringLiteral("to a fd 1 ] end a") << kStray;
    QTest::newRow("stray ] in a body called from a loop") << QStringLiteral("to a fd 1 ] end repeat 2 [ a ]") << kStray;
    QTest::newRow("open [ at top level") << QStringLiteral("[ fd 1 ]") << unknown(QStringLiteral("["));

    // REPEAT.
    QTest::newRow("repeat 0") << QStringLiteral("repeat 0 [ fd 1 ]") << kRepeatCount;
    QTest::newRow("repeat 101") << QStringLiteral("repeat 101 [ fd 1 ]") << kRepeatCount;
    QTest::newRow("repeat 2.5") << QStringLiteral("repeat 2.5 [ fd 1 ]") << kRepeatCount;
    QTest::newRow("repeat 0.5") << QStringLiteral("repeat 0.5 [ fd 1 ]") << kRepeatCount;
    QTest::newRow("repeat 100.5") << QStringLiteral("repeat 100.5 [ fd 1 ]") << kRepeatCount;
    QTest::newRow("repeat -3") << QStringLiteral("repeat -3 [ fd 1 ]") << kRepeatCount;
    QTest::newRow("repeat 1e3") << QStringLiteral("repeat 1e3 [ fd 1 ]") << kRepeatCount;
    QTest::newRow("count before bracket") << QStringLiteral("repeat 0 fd 1") << kRepeatCount;
    QTest::newRow("count before body") << QStringLiteral("repeat 200 [ jump ]") << kRepeatCount;
    QTest::newRow("repeat count not a number") << QStringLiteral("repeat x [ fd 1 ]") << kNumber;
    QTest::newRow("repeat count glued") << QStringLiteral("repeat 2.5x [ fd 1 ]") << kNumber;
    QTest::newRow("repeat last") << QStringLiteral("fd 1 repeat") << kNumber;
    QTest::newRow("repeat count missing before [") << QStringLiteral("repeat [ fd 1 ]") << kNumber;
    QTest::newRow("repeat without [") << QStringLiteral("repeat 4 fd 10") << kRepeatBracket;
    QTest::newRow("repeat ends after count") << QStringLiteral("repeat 4") << kRepeatBracket;
    QTest::newRow("repeat count then ]") << QStringLiteral("repeat 4 ]") << kRepeatBracket;

    // Step limits.
    QTest::newRow("repeat 100 of repeat 100") << QStringLiteral("repeat 100 [ repeat 100 [ fd 1 ] ]") << kLotsOfSteps;
    QTest::newRow("repeat one over 2000") << QStringLiteral("fd 1 repeat 20 [ repeat 100 [ fd 1 ] ]") << kLotsOfSteps;
    QTest::newRow("repeat body times count over 2000") << QStringLiteral("repeat 100 [ ") + times(QStringLiteral("fd 1 "), 21)
            + QStringLiteral("]")
                                                       << kLotsOfSteps;
    QTest::newRow("body fault before step count") << QStringLiteral("repeat 100 [ repeat 100 [ fd 1 ] jump ]")
                                                  << unknown(QStringLiteral("jump"));
    QTest::newRow("2001 moves") << times(QStringLiteral("fd 1 "), 2001) << kTooManySteps;
    QTest::newRow("2001 plain commands") << times(QStringLiteral("pu "), 2001) << kTooManySteps;
    QTest::newRow("2001 colours") << times(QStringLiteral("color red "), 2001) << kTooManySteps;
    QTest::newRow("2001 from a loop and a move") << QStringLiteral("repeat 20 [ repeat 100 [ fd 1 ] ] rt 1") << kTooManySteps;
    QTest::newRow("2001 inside one body") << QStringLiteral("repeat 2 [ ") + times(QStringLiteral("fd 1 "), 2001)
            + QStringLiteral("]")
                                          << kTooManySteps;
    QTest::newRow("2001 through recipe calls") << QStringLiteral("to a ") + times(QStringLiteral("fd 1 "), 1000)
            + QStringLiteral("end a a a")
                                               << kTooManySteps;
    QTest::newRow("step limit before a later fault") << times(QStringLiteral("fd 1 "), 2001) + QStringLiteral("jump")
                                                     << kTooManySteps;

    // Recursion.
    QTest::newRow("self call") << QStringLiteral("to a a end a") << callsItself(QStringLiteral("A"));
    QTest::newRow("self call through a loop") << QStringLiteral("to spin repeat 2 [ fd 1 spin ] end spin")
                                              << callsItself(QStringLiteral("SPIN"));
    QTest::newRow("mutual, first called first") << QStringLiteral("to a fd 1 b end to b a end a") << callsItself(QStringLiteral("A"));
    QTest::newRow("mutual, second called first") << QStringLiteral("to a fd 1 b end to b a end b")
                                                 << callsItself(QStringLiteral("B"));
    QTest::newRow("mixed-case recursive name") << QStringLiteral("to Petal PETAL end petal") << callsItself(QStringLiteral("PETAL"));
    QTest::newRow("recursion after a clean call") << QStringLiteral("to x fd 1 end to a x b end to b x a end x a")
                                                  << callsItself(QStringLiteral("A"));
    QTest::newRow("recursion reached from a used recipe")
        << QStringLiteral("to c d end to d fd 1 end to e c f end to f e end c c e") << callsItself(QStringLiteral("E"));

    // Numbers.
    QTest::newRow("forward last") << QStringLiteral("forward") << kNumber;
    QTest::newRow("forward word") << QStringLiteral("forward jump") << kNumber;
    QTest::newRow("forward bracket") << QStringLiteral("fd [ 1 ]") << kNumber;
    QTest::newRow("width last") << QStringLiteral("width") << kNumber;
    QTest::newRow("setheading word") << QStringLiteral("seth north") << kNumber;
    QTest::newRow("right 5abc") << QStringLiteral("rt 5abc") << kNumber;
    QTest::newRow("forward inf") << QStringLiteral("fd inf") << kNumber;
    QTest::newRow("forward nan") << QStringLiteral("fd nan") << kNumber;
    QTest::newRow("forward 1e999") << QStringLiteral("fd 1e999") << kNumber;
    QTest::newRow("forward 1,5") << QStringLiteral("fd 1,5") << kNumber;
    QTest::newRow("number fault before range") << QStringLiteral("fd x fd 99999") << kNumber;
    QTest::newRow("distance 10001") << QStringLiteral("fd 10001") << kRange;
    QTest::newRow("distance -10001") << QStringLiteral("fd -10001") << kRange;
    QTest::newRow("back 1e5") << QStringLiteral("bk 1e5") << kRange;
    QTest::newRow("turn 10000.5") << QStringLiteral("rt 10000.5") << kRange;
    QTest::newRow("turn left -10001") << QStringLiteral("lt -10001") << kRange;
    QTest::newRow("heading -10001") << QStringLiteral("seth -10001") << kRange;
    QTest::newRow("width 0.5") << QStringLiteral("width 0.5") << kRange;
    QTest::newRow("width 21") << QStringLiteral("width 21") << kRange;
    QTest::newRow("width 0") << QStringLiteral("setpensize 0") << kRange;
    QTest::newRow("width -5") << QStringLiteral("width -5") << kRange;
    QTest::newRow("width 20.001") << QStringLiteral("width 20.001") << kRange;
    QTest::newRow("range in a loop") << QStringLiteral("repeat 2 [ fd 20000 ]") << kRange;

    // Colours.
    QTest::newRow("color last") << QStringLiteral("color") << kColorMissing;
    QTest::newRow("setpc last") << QStringLiteral("fd 1 setpc") << kColorMissing;
    QTest::newRow("color unknown") << QStringLiteral("color violet") << kColorUnknown;
    QTest::newRow("color number") << QStringLiteral("color 5") << kColorUnknown;
    QTest::newRow("color only quotes") << QStringLiteral("color \"\"") << kColorUnknown;
    QTest::newRow("color bracket") << QStringLiteral("color [ red ]") << kColorUnknown;
    QTest::newRow("color in curly quotes") << QStringLiteral("color \u201Cred\u201D") << kColorUnknown;
    QTest::newRow("color glued word") << QStringLiteral("color redd") << kColorUnknown;

    // Unknown words, shown as typed after lower-casing.
    QTest::newRow("unknown jump") << QStringLiteral("jump") << unknown(QStringLiteral("jump"));
    QTest::newRow("unknown upper case") << QStringLiteral("FD 10 JUMP 5") << unknown(QStringLiteral("jump"));
    QTest::newRow("stray end") << QStringLiteral("fd 1 end") << unknown(QStringLiteral("end"));
    QTest::newRow("extra number") << QStringLiteral("fd 10 20") << unknown(QStringLiteral("20"));
    QTest::newRow("quoted word") << QStringLiteral("fd 10 \"red") << unknown(QStringLiteral("\"red"));
    QTest::newRow("unknown in a loop") << QStringLiteral("repeat 2 [ jump ]") << unknown(QStringLiteral("jump"));
    QTest::newRow("unknown in a called body") << QStringLiteral("to a hop end a") << unknown(QStringLiteral("hop"));
    QTest::newRow("unknown accented") << QStringLiteral("\u00C9toile") << unknown(QStringLiteral("\u00E9toile"));
    QTest::newRow("first fault in order") << QStringLiteral("jump fd 10001") << unknown(QStringLiteral("jump"));
    QTest::newRow("range before later unknown") << QStringLiteral("fd 10001 jump") << kRange;
}

void TestLanguage::errors()
{
    QFETCH(QString, program);
    QFETCH(QString, message);
    Outcome outcome;
    try {
        outcome = parseProgram(program);
    } catch (...) {
        QFAIL("an error other than LogoError escaped");
    }
    QVERIFY2(outcome.failed, qPrintable(QStringLiteral("no error; got ") + render(outcome.instructions).left(200)));
    QCOMPARE(outcome.message, message);
}

void TestLanguage::numbers_data()
{
    QTest::addColumn<QString>("token");
    QTest::addColumn<bool>("accepted");
    QTest::addColumn<double>("value");

    QTest::newRow("integer") << QStringLiteral("100") << true << 100.0;
    QTest::newRow("exponent") << QStringLiteral("1e3") << true << 1000.0;
    QTest::newRow("upper-case exponent") << QStringLiteral("1E3") << true << 1000.0;
    QTest::newRow("negative exponent") << QStringLiteral("25e-1") << true << 2.5;
    QTest::newRow("plus sign") << QStringLiteral("+5") << true << 5.0;
    QTest::newRow("minus sign") << QStringLiteral("-5") << true << -5.0;
    QTest::newRow("point first") << QStringLiteral(".5") << true << 0.5;
    QTest::newRow("point last") << QStringLiteral("5.") << true << 5.0;
    QTest::newRow("decimal") << QStringLiteral("1.5") << true << 1.5;
    QTest::newRow("leading zeros") << QStringLiteral("007") << true << 7.0;
    QTest::newRow("hex") << QStringLiteral("0x10") << true << 16.0;
    QTest::newRow("upper-case hex") << QStringLiteral("0X1F") << true << 31.0;
    QTest::newRow("negative hex") << QStringLiteral("-0x10") << true << -16.0;
    QTest::newRow("hex float") << QStringLiteral("0x1p4") << true << 16.0;
    QTest::newRow("hex fraction") << QStringLiteral("0x.8p1") << true << 1.0;
    QTest::newRow("zero") << QStringLiteral("0") << true << 0.0;
    QTest::newRow("63 characters") << QString(62, u'0') + u'5' << true << 5.0;
    QTest::newRow("64 characters") << QString(63, u'0') + u'5' << true << 5.0;
    QTest::newRow("long decimal") << QStringLiteral("1.") + QString(200, u'0') << true << 1.0;

    QTest::newRow("inf") << QStringLiteral("inf") << false << 0.0;
    QTest::newRow("-inf") << QStringLiteral("-inf") << false << 0.0;
    QTest::newRow("infinity") << QStringLiteral("infinity") << false << 0.0;
    QTest::newRow("nan") << QStringLiteral("nan") << false << 0.0;
    QTest::newRow("nan with payload") << QStringLiteral("nan(1)") << false << 0.0;
    QTest::newRow("overflow") << QStringLiteral("1e999") << false << 0.0;
    QTest::newRow("trailing letters") << QStringLiteral("5abc") << false << 0.0;
    QTest::newRow("decimal comma") << QStringLiteral("1,5") << false << 0.0;
    QTest::newRow("two points") << QStringLiteral("1.2.3") << false << 0.0;
    QTest::newRow("point only") << QStringLiteral(".") << false << 0.0;
    QTest::newRow("sign only") << QStringLiteral("-") << false << 0.0;
    QTest::newRow("two signs") << QStringLiteral("+-5") << false << 0.0;
    QTest::newRow("exponent without digits") << QStringLiteral("1e") << false << 0.0;
    QTest::newRow("exponent without mantissa") << QStringLiteral("e5") << false << 0.0;
    QTest::newRow("hex prefix only") << QStringLiteral("0x") << false << 0.0;
    QTest::newRow("hex exponent without digits") << QStringLiteral("0x1p") << false << 0.0;
    QTest::newRow("embedded NUL") << QStringLiteral("1") + QChar(0) << false << 0.0;
    QTest::newRow("long with a letter at the end") << QString(100, u'1') + u'x' << false << 0.0;
    QTest::newRow("underscore") << QStringLiteral("1_000") << false << 0.0;
    QTest::newRow("thousands separator") << QStringLiteral("1.000,5") << false << 0.0;
    QTest::newRow("Arabic-Indic digits") << QStringLiteral("\u0665") << false << 0.0;
    QTest::newRow("fullwidth digits") << QStringLiteral("\uFF15") << false << 0.0;
    QTest::newRow("vulgar fraction") << QStringLiteral("\u00BD") << false << 0.0;
    QTest::newRow("minus sign U+2212") << QStringLiteral("\u22125") << false << 0.0;
}

void TestLanguage::checkNumber()
{
    QFETCH(QString, token);
    QFETCH(bool, accepted);
    QFETCH(double, value);
    for (const QString &command : {QStringLiteral("fd"), QStringLiteral("rt")}) {
        const Outcome outcome = parseProgram(command + u' ' + token);
        if (!accepted) {
            QVERIFY2(outcome.failed, qPrintable(render(outcome.instructions)));
            QCOMPARE(outcome.message, kNumber);
            continue;
        }
        QVERIFY2(!outcome.failed, qPrintable(outcome.message));
        QCOMPARE(outcome.instructions.size(), 1);
        QCOMPARE(outcome.instructions.first().value, value);
    }
}

void TestLanguage::numbers()
{
    checkNumber();
}

void TestLanguage::numbersUnderGermanLocale_data()
{
    numbers_data();
}

// Reading numbers must not follow the user's locale (a German one writes 1,5).
void TestLanguage::numbersUnderGermanLocale()
{
    const GermanLocale german;
    if (!german.switchedC() && QTest::currentDataTag() == QByteArray("integer"))
        qInfo("de_DE is not installed: only Qt's default locale is German");
    checkNumber();
}

void TestLanguage::parserState_data()
{
    QTest::addColumn<QString>("program");
    QTest::addColumn<int>("index");
    QTest::addColumn<QString>("procedures");
    QTest::addColumn<QString>("executable");

    QTest::newRow("success") << QStringLiteral("fd 10 TO Sq repeat 4 [ FD 1 ] end rt 5") << 13
                             << QStringLiteral("sq=repeat 4 [ fd 1 ]") << QStringLiteral("fd|10|rt|5");
    QTest::newRow("bodies kept raw") << QStringLiteral("to a fd 1 b end to b jump ] end a") << 12
                                     << QStringLiteral("a=fd 1 b;b=jump ]") << QStringLiteral("a");
    QTest::newRow("empty body") << QStringLiteral("to a end a a") << 5 << QStringLiteral("a=") << QStringLiteral("a|a");
    QTest::newRow("expansion fault") << QStringLiteral("to a fd 1 end to b rt 2 end jump") << 11
                                     << QStringLiteral("a=fd 1;b=rt 2") << QStringLiteral("jump");
    QTest::newRow("to inside brackets") << QStringLiteral("fd 1 [ to a end") << 4 << QString() << QString();
    QTest::newRow("to after stray ]") << QStringLiteral("repeat 2 [ fd 1 ] ] to a end") << 8 << QString() << QString();
    QTest::newRow("to last") << QStringLiteral("fd 10 to") << 3 << QString() << QString();
    QTest::newRow("bad name") << QStringLiteral("fd 1 to 5a fd end") << 4 << QString() << QString();
    QTest::newRow("duplicate name") << QStringLiteral("to a fd 1 end to A end") << 7 << QStringLiteral("a=fd 1") << QString();
    QTest::newRow("to inside a body") << QStringLiteral("to a fd to b end") << 3 << QString() << QString();
    QTest::newRow("missing end") << QStringLiteral("to a end to b fd 1") << 7 << QStringLiteral("a=") << QString();
    QTest::newRow("too long") << times(QStringLiteral("fd "), 12001) << 0 << QString() << QString();
}

void TestLanguage::parserState()
{
    QFETCH(QString, program);
    QFETCH(int, index);
    QFETCH(QString, procedures);
    QFETCH(QString, executable);
    LogoParser parser(program);
    try {
        parser.parse();
    } catch (const LogoError &) {
        // Only the state left behind matters here.
    }
    QCOMPARE(parser.index, qsizetype(index));
    QCOMPARE(renderProcedures(parser.procedures), procedures);
    QCOMPARE(parser.executableTokens.join(u'|'), executable);
}

// Eleven recipes, each calling the next ten times, the last drawing nothing: expanding every call
// one by one would take 10^10 expansions.
void TestLanguage::callChainThatDrawsNothingFinishes()
{
    const QString program = recipeChain(11, 10, QString());
    const Outcome outcome = parseProgram(program);
    QVERIFY2(!outcome.failed, qPrintable(outcome.message));
    QVERIFY(outcome.instructions.isEmpty());

    // The same chain called from inside loops, one level left for them.
    const Outcome looped = parseProgram(recipeChain(10, 10, QString()).chopped(2)
                                        + QStringLiteral("repeat 100 [ ra ra ] fd 1"));
    QVERIFY2(!looped.failed, qPrintable(looped.message));
    QCOMPARE(render(looped.instructions), QStringLiteral("forward 1"));
}

QTEST_GUILESS_MAIN(TestLanguage)
#include "tst_language.moc"
