#include "language/LogoParser.h"

#include "language/LogoError.h"
#include "language/LogoNumber.h"

#include <QSet>
#include <QStringView>

#include <algorithm>
#include <cmath>
#include <unordered_map>

namespace {

const QString kTo = QStringLiteral("to");
const QString kEnd = QStringLiteral("end");
const QString kRepeat = QStringLiteral("repeat");
const QString kColor = QStringLiteral("color");
const QString kOpen = QStringLiteral("[");
const QString kClose = QStringLiteral("]");

[[noreturn]] void fail(const QString &message)
{
    throw LogoError(message);
}

bool isLineBreak(char16_t c)
{
    return c == u'\n' || c == u'\r' || c == u'\v' || c == u'\f' || c == 0x0085 || c == 0x2028 || c == 0x2029;
}

// The same tokens as joining the lines without their comments, spacing the brackets apart,
// lower-casing and splitting at white space, in one pass. Repeated words share one string,
// so a long program costs few allocations.
QStringList tokenize(const QString &text)
{
    struct ViewHash {
        size_t operator()(QStringView view) const noexcept { return qHash(view); }
    };
    std::unordered_map<QStringView, QString, ViewHash> seen;
    QStringList tokens;
    const auto addWord = [&](qsizetype from, qsizetype to) {
        if (from >= to)
            return;
        QStringView word = QStringView(text).sliced(from, to - from);
        QString lowered;
        const bool plain = std::all_of(word.begin(), word.end(), [](QChar c) {
            return c.unicode() < 0x80 && !(c.unicode() >= u'A' && c.unicode() <= u'Z');
        });
        if (!plain) {
            lowered = word.toString().toLower();
            word = lowered;
        }
        const auto known = seen.find(word);
        if (known != seen.end()) {
            tokens.append(known->second);
            return;
        }
        const QString token = plain ? word.toString() : lowered;
        seen.emplace(QStringView(token), token);
        tokens.append(token);
    };

    bool inComment = false;
    qsizetype wordStart = 0;
    const qsizetype n = text.size();
    for (qsizetype i = 0; i < n; ++i) {
        const QChar ch = text.at(i);
        const char16_t c = ch.unicode();
        if (isLineBreak(c)) {
            if (!inComment)
                addWord(wordStart, i);
            inComment = false;
            wordStart = i + 1;
        } else if (inComment) {
            continue;
        } else if (c == u';' || c == u'[' || c == u']' || ch.isSpace()) {
            addWord(wordStart, i);
            wordStart = i + 1;
            if (c == u';')
                inComment = true;
            else if (c == u'[')
                tokens.append(kOpen);
            else if (c == u']')
                tokens.append(kClose);
        }
    }
    if (!inComment)
        addWord(wordStart, n);
    return tokens;
}

// Letters of any script; a combining mark may follow a letter (é written as e + ́).
bool isMadeOfLetters(const QString &word)
{
    bool first = true;
    for (const char32_t c : word.toUcs4()) {
        const QChar::Category category = QChar::category(c);
        const bool mark = category == QChar::Mark_NonSpacing || category == QChar::Mark_SpacingCombining
            || category == QChar::Mark_Enclosing;
        if (!(QChar::isLetter(c) || (mark && !first)))
            return false;
        first = false;
    }
    return !word.isEmpty();
}

QString missingEnd(const QString &name)
{
    return QStringLiteral("Add END to finish your ") + name.toUpper() + QStringLiteral(" recipe.");
}

QString callsItself(const QString &name)
{
    return QStringLiteral("The ") + name.toUpper() + QStringLiteral(" recipe calls itself. Try a REPEAT loop instead.");
}

QString unknownWord(const QString &token)
{
    return QStringLiteral("I don't know ‘") + token
        + QStringLiteral("’ yet. Check the command guide or define it with TO … END.");
}

} // namespace

LogoParser::LogoParser(const QString &text)
    : tokens(tokenize(text))
{
}

const QHash<QString, QString> &LogoParser::aliases()
{
    static const QHash<QString, QString> table{
        {QStringLiteral("fd"), QStringLiteral("forward")},
        {QStringLiteral("bk"), QStringLiteral("back")},
        {QStringLiteral("backward"), QStringLiteral("back")},
        {QStringLiteral("rt"), QStringLiteral("right")},
        {QStringLiteral("lt"), QStringLiteral("left")},
        {QStringLiteral("pu"), QStringLiteral("penup")},
        {QStringLiteral("pd"), QStringLiteral("pendown")},
        {QStringLiteral("cs"), QStringLiteral("clear")},
        {QStringLiteral("setpc"), QStringLiteral("color")},
        {QStringLiteral("setpencolor"), QStringLiteral("color")},
        {QStringLiteral("setpensize"), QStringLiteral("width")},
        {QStringLiteral("seth"), QStringLiteral("setheading")},
    };
    return table;
}

bool LogoParser::isBuiltin(const QString &word)
{
    static const QSet<QString> builtins{
        QStringLiteral("forward"), QStringLiteral("back"), QStringLiteral("right"), QStringLiteral("left"),
        QStringLiteral("width"), QStringLiteral("color"), QStringLiteral("penup"), QStringLiteral("pendown"),
        QStringLiteral("home"), QStringLiteral("clear"), QStringLiteral("setheading"), QStringLiteral("repeat"),
        QStringLiteral("to"), QStringLiteral("end"),
    };
    return builtins.contains(word);
}

bool LogoParser::isNumberCommand(const QString &word)
{
    static const QSet<QString> commands{
        QStringLiteral("forward"), QStringLiteral("back"), QStringLiteral("right"),
        QStringLiteral("left"), QStringLiteral("width"), QStringLiteral("setheading"),
    };
    return commands.contains(word);
}

bool LogoParser::isPlainCommand(const QString &word)
{
    static const QSet<QString> commands{
        QStringLiteral("penup"), QStringLiteral("pendown"), QStringLiteral("home"), QStringLiteral("clear"),
    };
    return commands.contains(word);
}

const QStringList &LogoParser::colorNames()
{
    static const QStringList names{
        QStringLiteral("pink"), QStringLiteral("purple"), QStringLiteral("blue"),
        QStringLiteral("green"), QStringLiteral("orange"), QStringLiteral("yellow"),
        QStringLiteral("white"), QStringLiteral("black"), QStringLiteral("red"),
    };
    return names;
}

QList<Instruction> LogoParser::parse()
{
    if (tokens.size() > maxTokens)
        fail(QStringLiteral("That program is very long. Try a smaller drawing first."));

    const qsizetype count = tokens.size();
    qsizetype balance = 0;
    QStringList executable;
    executable.reserve(count);
    while (index < count) {
        const QString &token = tokens.at(index);
        if (token != kTo) {
            executable.append(token);
            if (token == kOpen)
                ++balance;
            else if (token == kClose)
                --balance;
            ++index;
            continue;
        }

        const qsizetype at = index;
        if (balance != 0 || at == count - 1) {
            index = at + 1;
            fail(QStringLiteral("Put TO name … END outside your loops."));
        }
        const QString &name = tokens.at(at + 1);
        if (!isMadeOfLetters(name) || isBuiltin(name) || aliases().contains(name) || procedures.contains(name)) {
            index = at + 2;
            fail(QStringLiteral("Give each recipe a new name made of letters, like PETAL."));
        }
        QStringList body;
        qsizetype position = at + 2;
        for (; position < count && tokens.at(position) != kEnd; ++position) {
            if (tokens.at(position) == kTo) {
                index = position;
                fail(QStringLiteral("Finish this recipe with END before starting another."));
            }
            body.append(tokens.at(position));
        }
        if (position == count) {
            index = count;
            fail(missingEnd(name));
        }
        procedures.insert(name, body);
        index = position + 1;
        balance = 0;
    }

    executableTokens = executable;
    qsizetype position = 0;
    return expand(executableTokens, position, 0, false, {});
}

QList<Instruction> LogoParser::expand(const QStringList &tokens, qsizetype &index, int depth, bool bracket,
                                      const QStringList &stack) const
{
    if (depth > maxDepth)
        fail(QStringLiteral("Try fewer loops or recipes inside one another."));

    const auto number = [&]() -> double {
        if (index >= tokens.size())
            fail(QStringLiteral("A number goes after that command. Try FORWARD 80."));
        const std::optional<double> value = readLogoNumber(tokens.at(index));
        if (!value)
            fail(QStringLiteral("A number goes after that command. Try FORWARD 80."));
        ++index;
        return *value;
    };

    QList<Instruction> result;
    while (true) {
        if (index >= tokens.size()) {
            if (bracket)
                fail(QStringLiteral("Your REPEAT loop needs a closing ]."));
            return result;
        }
        const QString &token = tokens.at(index);
        ++index;
        if (token == kClose) {
            if (bracket)
                return result;
            fail(QStringLiteral("This ] needs a matching [ after REPEAT."));
        }
        const auto alias = aliases().constFind(token);
        const QString &command = alias == aliases().cend() ? token : alias.value();

        if (command == kRepeat) {
            const double count = number();
            if (count < 1 || count > 100 || std::round(count) != count)
                fail(QStringLiteral("Try a whole REPEAT number from 1 to 100."));
            if (index >= tokens.size() || tokens.at(index) != kOpen)
                fail(QStringLiteral("Add [ after your REPEAT number, and ] at the end."));
            ++index;
            const QList<Instruction> body = expand(tokens, index, depth + 1, true, stack);
            const auto times = static_cast<qsizetype>(count);
            if (result.size() + body.size() * times > maxInstructions)
                fail(QStringLiteral("That's a lot of steps! Try a smaller REPEAT number."));
            for (qsizetype i = 0; i < times; ++i)
                result.append(body);
        } else if (const auto recipe = procedures.constFind(command); recipe != procedures.cend()) {
            if (stack.contains(command))
                fail(callsItself(command));
            const std::pair<QString, int> key{command, depth + 1};
            auto expanded = m_expandedRecipes.constFind(key);
            if (expanded == m_expandedRecipes.cend()) {
                qsizetype position = 0;
                QStringList inner = stack;
                inner.append(command);
                expanded = m_expandedRecipes.insert(key, expand(recipe.value(), position, depth + 1, false, inner));
            }
            result.append(expanded.value());
        } else if (isNumberCommand(command)) {
            const double value = number();
            if (std::abs(value) > 10000 || (command == u"width" && (value < 1 || value > 20)))
                fail(QStringLiteral("Use distances and turns up to 10,000, and widths from 1 to 20."));
            result.append(Instruction{command, value, QString()});
        } else if (command == kColor) {
            if (index >= tokens.size())
                fail(QStringLiteral("Give COLOR a name, like COLOR pink."));
            QString word = tokens.at(index);
            word.remove(u'"');
            ++index;
            if (!colorNames().contains(word))
                fail(QStringLiteral("Try pink, purple, blue, green, orange, yellow, red, white, or black."));
            result.append(Instruction{kColor, 0, word});
        } else if (isPlainCommand(command)) {
            result.append(Instruction{command, 0, QString()});
        } else {
            fail(unknownWord(token));
        }
        if (result.size() > maxInstructions)
            fail(QStringLiteral("Try fewer than 2,000 steps in one run."));
    }
}
