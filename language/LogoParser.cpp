#include "language/LogoParser.h"

#include "language/LogoError.h"
#include "language/LogoNumber.h"

#include <QSet>
#include <QStringView>

#include <algorithm>
#include <cmath>
#include <numeric>
#include <unordered_map>

namespace {

const QString kTo = QStringLiteral("to");
const QString kEnd = QStringLiteral("end");
const QString kRepeat = QStringLiteral("repeat");
const QString kColor = QStringLiteral("color");
const QString kOpen = QStringLiteral("[");
const QString kClose = QStringLiteral("]");

[[noreturn]] void fail(const QString &message, SourcePlace place = {})
{
    throw LogoError(message, place);
}

bool isLineBreak(char16_t c)
{
    return c == u'\n' || c == u'\r' || c == u'\v' || c == u'\f' || c == 0x0085 || c == 0x2028 || c == 0x2029;
}

// Starts a new line of the editor; the other breaks only end a comment.
bool isParagraphBreak(const QString &text, qsizetype i)
{
    const char16_t c = text.at(i).unicode();
    return c == u'\n' || c == 0x2029 || (c == u'\r' && (i + 1 == text.size() || text.at(i + 1) != u'\n'));
}

// The same tokens as joining the lines without their comments, spacing the brackets apart,
// lower-casing and splitting at white space, in one pass, with the place of each. Repeated
// words share one string, so a long program costs few allocations.
void tokenize(const QString &text, QStringList &tokens, QList<SourcePlace> &places, QList<SourcePlace> &comments)
{
    struct ViewHash {
        size_t operator()(QStringView view) const noexcept { return qHash(view); }
    };
    std::unordered_map<QStringView, QString, ViewHash> seen;
    // A token and the space after it take at least two characters; growing both lists once
    // instead of step by step keeps a long program from churning memory.
    tokens.reserve(text.size() / 2 + 1);
    places.reserve(text.size() / 2 + 1);
    int line = 0;
    qsizetype lineStart = 0;
    const auto addWord = [&](qsizetype from, qsizetype to) {
        if (from >= to)
            return;
        places.append(SourcePlace{line, int(from - lineStart), int(to - from)});
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
    // A comment ends at any line break, which may fall inside a line of the editor.
    const auto endComment = [&](qsizetype end) {
        if (inComment)
            comments.last().length = int(end - lineStart) - comments.last().column;
        inComment = false;
    };
    const qsizetype n = text.size();
    for (qsizetype i = 0; i < n; ++i) {
        const QChar ch = text.at(i);
        const char16_t c = ch.unicode();
        if (isLineBreak(c)) {
            if (!inComment)
                addWord(wordStart, i);
            endComment(i);
            wordStart = i + 1;
            if (isParagraphBreak(text, i)) {
                ++line;
                lineStart = i + 1;
            }
        } else if (inComment) {
            continue;
        } else if (c == u';' || c == u'[' || c == u']' || ch.isSpace()) {
            addWord(wordStart, i);
            wordStart = i + 1;
            if (c == u';') {
                inComment = true;
                comments.append(SourcePlace{line, int(i - lineStart), 0});
            } else if (c == u'[' || c == u']') {
                tokens.append(c == u'[' ? kOpen : kClose);
                places.append(SourcePlace{line, int(i - lineStart), 1});
            }
        }
    }
    if (!inComment)
        addWord(wordStart, n);
    endComment(n);
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
{
    tokenize(text, tokens, places, comments);
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
        fail(QStringLiteral("That program is very long. Try a smaller drawing first."), places.at(maxTokens));

    const qsizetype count = tokens.size();
    qsizetype balance = 0;
    // Until a recipe turns up, the main program is all of the tokens and needs no copy.
    bool recipes = false;
    QList<qint32> gathered;
    while (index < count) {
        const QString &token = tokens.at(index);
        if (token != kTo) {
            if (recipes) {
                executableTokens.append(token);
                gathered.append(qint32(index));
            }
            if (token == kOpen)
                ++balance;
            else if (token == kClose)
                --balance;
            ++index;
            continue;
        }

        const qsizetype at = index;
        if (!recipes) {
            recipes = true;
            executableTokens = tokens.first(at);
            gathered.resize(at);
            std::iota(gathered.begin(), gathered.end(), 0);
        }
        if (balance != 0 || at == count - 1) {
            index = at + 1;
            fail(QStringLiteral("Put TO name … END outside your loops."), places.at(at));
        }
        const QString &name = tokens.at(at + 1);
        if (!isMadeOfLetters(name) || isBuiltin(name) || aliases().contains(name) || procedures.contains(name)) {
            index = at + 2;
            fail(QStringLiteral("Give each recipe a new name made of letters, like PETAL."), places.at(at + 1));
        }
        qsizetype position = at + 2;
        for (; position < count && tokens.at(position) != kEnd; ++position) {
            if (tokens.at(position) == kTo) {
                index = position;
                fail(QStringLiteral("Finish this recipe with END before starting another."), places.at(position));
            }
        }
        if (position == count) {
            index = count;
            fail(missingEnd(name), places.at(at + 1));
        }
        procedures.insert(name, tokens.sliced(at + 2, position - at - 2));
        procedureStarts.insert(name, at + 2);
        index = position + 1;
        balance = 0;
    }
    if (!recipes)
        executableTokens = tokens;

    qsizetype position = 0;
    return expand(executableTokens, position, 0, false, {}, Run{recipes ? gathered.constData() : nullptr, 0});
}

QList<Instruction> LogoParser::expand(const QStringList &tokens, qsizetype &index, int depth, bool bracket,
                                      const QStringList &stack, Run run, SourcePlace opener) const
{
    // A command at the very end asks for the place of the word after it, which is not there.
    const auto placeAt = [&](qsizetype i) { return i < tokens.size() ? places.at(run(i)) : SourcePlace{}; };
    const auto tooDeep = [](SourcePlace place) {
        fail(QStringLiteral("Try fewer loops or recipes inside one another."), place);
    };
    if (depth > maxDepth)
        tooDeep(opener);

    // A missing number is blamed on the word standing in its place, or on the command at the end.
    const auto number = [&](SourcePlace command) -> double {
        if (index >= tokens.size())
            fail(QStringLiteral("A number goes after that command. Try FORWARD 80."), command);
        const std::optional<double> value = readLogoNumber(tokens.at(index));
        if (!value)
            fail(QStringLiteral("A number goes after that command. Try FORWARD 80."), placeAt(index));
        ++index;
        return *value;
    };

    QList<Instruction> result;
    while (true) {
        if (index >= tokens.size()) {
            if (bracket)
                fail(QStringLiteral("Your REPEAT loop needs a closing ]."), opener);
            return result;
        }
        const QString &token = tokens.at(index);
        const SourcePlace place = placeAt(index);
        ++index;
        if (token == kClose) {
            if (bracket)
                return result;
            fail(QStringLiteral("This ] needs a matching [ after REPEAT."), place);
        }
        const auto alias = aliases().constFind(token);
        const QString &command = alias == aliases().cend() ? token : alias.value();

        if (command == kRepeat) {
            const SourcePlace countPlace = placeAt(index);
            const double count = number(place);
            if (count < 1 || count > 100 || std::round(count) != count)
                fail(QStringLiteral("Try a whole REPEAT number from 1 to 100."), countPlace);
            if (index >= tokens.size() || tokens.at(index) != kOpen)
                fail(QStringLiteral("Add [ after your REPEAT number, and ] at the end."),
                     index < tokens.size() ? placeAt(index) : countPlace);
            ++index;
            if (depth + 1 > maxDepth)
                tooDeep(place);
            const QList<Instruction> body = expand(tokens, index, depth + 1, true, stack, run, place);
            const auto times = static_cast<qsizetype>(count);
            if (result.size() + body.size() * times > maxInstructions)
                fail(QStringLiteral("That's a lot of steps! Try a smaller REPEAT number."), countPlace);
            for (qsizetype i = 0; i < times; ++i)
                result.append(body);
        } else if (const auto recipe = procedures.constFind(command); recipe != procedures.cend()) {
            if (stack.contains(command))
                fail(callsItself(command), place);
            if (depth + 1 > maxDepth)
                tooDeep(place);
            const std::pair<QString, int> key{command, depth + 1};
            auto expanded = m_expandedRecipes.constFind(key);
            if (expanded == m_expandedRecipes.cend()) {
                qsizetype position = 0;
                QStringList inner = stack;
                inner.append(command);
                const Run body{nullptr, qint32(procedureStarts.value(command))};
                expanded = m_expandedRecipes.insert(
                    key, expand(recipe.value(), position, depth + 1, false, inner, body, place));
            }
            if (stack.isEmpty()) {
                // Called from the main program: this call is the outermost one of everything it draws.
                const qsizetype from = result.size();
                result.append(expanded.value());
                const qint32 call = run(index - 1);
                for (auto it = result.begin() + from; it != result.end(); ++it)
                    it->callToken = call;
            } else {
                result.append(expanded.value());
            }
        } else if (isNumberCommand(command)) {
            const SourcePlace valuePlace = placeAt(index);
            const double value = number(place);
            if (std::abs(value) > 10000 || (command == u"width" && (value < 1 || value > 20)))
                fail(QStringLiteral("Use distances and turns up to 10,000, and widths from 1 to 20."), valuePlace);
            result.append(Instruction{command, value, QString(), place});
        } else if (command == kColor) {
            if (index >= tokens.size())
                fail(QStringLiteral("Give COLOR a name, like COLOR pink."), place);
            QString word = tokens.at(index);
            word.remove(u'"');
            const SourcePlace wordPlace = placeAt(index);
            ++index;
            if (!colorNames().contains(word))
                fail(QStringLiteral("Try pink, purple, blue, green, orange, yellow, red, white, or black."), wordPlace);
            result.append(Instruction{kColor, 0, word, place});
        } else if (isPlainCommand(command)) {
            result.append(Instruction{command, 0, QString(), place});
        } else {
            fail(unknownWord(token), place);
        }
        if (result.size() > maxInstructions)
            fail(QStringLiteral("Try fewer than 2,000 steps in one run."), place);
    }
}
