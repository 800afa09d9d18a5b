// Parse, and parse plus draw, of the largest programs the language accepts.
#include "language/LogoError.h"
#include "language/LogoParser.h"
#include "turtle/Turtle.h"

#include <benchmark/benchmark.h>

#include <QStringList>

namespace {

QString repeated(const QString &piece, int times)
{
    QStringList pieces;
    for (int i = 0; i < times; ++i)
        pieces.append(piece);
    return pieces.join(u' ');
}

// 12,000 tokens: 2,000 one-move loops of six tokens each.
QString mostTokens()
{
    return repeated(QStringLiteral("repeat 1 [ fd 1 ]"), 2000);
}

// 2,000 instructions from three nested loops.
QString nestedRepeats()
{
    return QStringLiteral("repeat 10 [ repeat 10 [ repeat 10 [ fd 1 rt 1 ] ] ]");
}

// Levels 1 to 11, the deepest nesting allowed.
QString elevenLevels()
{
    return repeated(QStringLiteral("repeat 2 ["), 9) + QStringLiteral(" repeat 1 [ repeat 1 [ fd 3 rt 7 ] ] ")
        + repeated(QStringLiteral("]"), 9);
}

// Eleven recipes, each calling the next twice, and one hundred recipes called once each.
QString recipesCallingRecipes()
{
    QString program;
    const QString letters = QStringLiteral("abcdefghijk");
    for (int level = 0; level < 10; ++level) {
        const QString name = QStringLiteral("step") + letters.at(level);
        const QString next = QStringLiteral("step") + letters.at(level + 1);
        program += QStringLiteral("to %1 %2 %2 end\n").arg(name, next);
    }
    program += QStringLiteral("to stepk fd 1 rt 1 end\nstepa\n");
    for (int i = 0; i < 100; ++i) {
        QString name;
        for (int n = i; n >= 0; n = n / 26 - 1)
            name.prepend(QChar(u'a' + n % 26));
        program += QStringLiteral("to petal%1 fd 2 rt 3.6 pu pd end petal%1\n").arg(name);
    }
    return program;
}

// One move past the 2,000-step limit.
QString tooManySteps()
{
    return repeated(QStringLiteral("fd 1"), 2001);
}

void parseProgram(benchmark::State &state, const QString &program)
{
    for (auto _ : state) {
        try {
            LogoParser parser(program);
            benchmark::DoNotOptimize(parser.parse());
        } catch (const LogoError &error) {
            benchmark::DoNotOptimize(error.message());
        }
    }
}

void tokenizeOnly(benchmark::State &state, const QString &program)
{
    for (auto _ : state)
        benchmark::DoNotOptimize(LogoParser(program).tokens);
}

void parseAndSimulate(benchmark::State &state, const QString &program)
{
    for (auto _ : state)
        benchmark::DoNotOptimize(simulate(program));
}

} // namespace

BENCHMARK_CAPTURE(tokenizeOnly, most_tokens_12000, mostTokens())->Unit(benchmark::kMicrosecond);
BENCHMARK_CAPTURE(parseProgram, most_tokens_12000, mostTokens())->Unit(benchmark::kMicrosecond);
BENCHMARK_CAPTURE(parseAndSimulate, most_tokens_12000, mostTokens())->Unit(benchmark::kMicrosecond);
BENCHMARK_CAPTURE(parseProgram, nested_repeats_2000, nestedRepeats())->Unit(benchmark::kMicrosecond);
BENCHMARK_CAPTURE(parseAndSimulate, nested_repeats_2000, nestedRepeats())->Unit(benchmark::kMicrosecond);
BENCHMARK_CAPTURE(parseProgram, eleven_levels, elevenLevels())->Unit(benchmark::kMicrosecond);
BENCHMARK_CAPTURE(parseAndSimulate, eleven_levels, elevenLevels())->Unit(benchmark::kMicrosecond);
BENCHMARK_CAPTURE(parseProgram, recipes_calling_recipes, recipesCallingRecipes())->Unit(benchmark::kMicrosecond);
BENCHMARK_CAPTURE(parseAndSimulate, recipes_calling_recipes, recipesCallingRecipes())->Unit(benchmark::kMicrosecond);
BENCHMARK_CAPTURE(parseProgram, refused_at_2001_steps, tooManySteps())->Unit(benchmark::kMicrosecond);
BENCHMARK_CAPTURE(parseAndSimulate, refused_at_2001_steps, tooManySteps())->Unit(benchmark::kMicrosecond);
