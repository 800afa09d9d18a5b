// The editor and stage links: which stroke a click means, among the most strokes a program draws;
// and what the editor's colouring and place keeping add to a keystroke in a long program.
#include "canvas/StrokeHit.h"
#include "canvas/SurfacePainter.h"
#include "ui/studio/CodeDocument.h"
#include "ui/studio/CodeHighlighter.h"

#include <benchmark/benchmark.h>

#include <QQmlComponent>
#include <QQmlEngine>
#include <QQuickItem>
#include <QTextBlock>
#include <QTextDocument>

#include <chrono>
#include <cmath>
#include <memory>
#include <numbers>

namespace {

// 2,000 strokes of a widening spiral that crosses itself.
QList<Stroke> spiral()
{
    QList<Stroke> strokes;
    QPointF point;
    for (int i = 0; i < 2000; ++i) {
        const double radians = i * 7.3 * std::numbers::pi / 180;
        const QPointF next = point + QPointF(std::sin(radians), -std::cos(radians)) * (2 + i * 0.15);
        strokes.append(Stroke{point, next, QStringLiteral("blue"), double(1 + i % 20)});
        point = next;
    }
    return strokes;
}

// A click on the first stroke, under every later one's reach test: the whole list is walked.
void strokeUnderClick(benchmark::State &state)
{
    const QList<Stroke> strokes = spiral();
    const SurfaceFit fit = fitSurface(QSizeF(640, 340), strokes, {});
    const QPointF click = fit.map((strokes.first().from + strokes.first().to) / 2);
    for (auto _ : state)
        benchmark::DoNotOptimize(strokeAt(strokes, fit, click, 6));
}

// 2,000 lines of every kind the colouring knows: recipes and their calls, loops, colours, comments.
QString longProgram()
{
    QString program;
    for (int i = 0; i < 500; ++i) {
        QString name;
        for (int n = i; n >= 0; n = n / 26 - 1)
            name.prepend(QChar(u'a' + n % 26));
        program += QStringLiteral("to petal%1 repeat 4 [forward 100 right 90] end\n"
                                  "petal%1 ; one more petal\n"
                                  "color pink fd 50 rt 45 jump\n"
                                  "repeat 36 [forward 120 right 170]\n").arg(name);
    }
    return program;
}

// One keystroke per iteration in a real text editing item holding longProgram(): a digit typed
// just before the "]" of line 1,004, or taken out again. With `range(0)` 1 the editor's colouring,
// wrap marks and the lookups its bindings make at the cursor come along, so the difference from 0
// is what they add; with 2 a letter goes into the recipe name on line 1,001 instead, which
// changes the colour of the line calling it.
void keystrokeInLongProgram(benchmark::State &state)
{
    const bool editorWork = state.range(0) != 0;
    QQmlEngine engine;
    QQmlComponent component(&engine);
    component.setData("import QtQuick\nTextEdit { width: 560; wrapMode: TextEdit.Wrap; font.pixelSize: 16 }", {});
    std::unique_ptr<QQuickItem> editor(qobject_cast<QQuickItem *>(component.create()));
    if (!editor) {
        state.SkipWithError("no text editing item");
        return;
    }
    editor->setProperty("text", longProgram());
    auto *document = editor->property("textDocument").value<QQuickTextDocument *>();
    CodeHighlighter highlighter;
    CodeDocument wrapping;
    if (editorWork) {
        QVariantMap colors;
        for (const char *role : {"command", "number", "color", "repeat", "bracket", "recipe", "comment", "unknown"})
            colors.insert(QString::fromLatin1(role), QColor(Qt::darkBlue));
        highlighter.setColors(colors);
        highlighter.setDocument(document);
        wrapping.setHangingIndent(18);
        wrapping.setDocument(document);
    }
    // Loading the program is over before the first keystroke.
    QCoreApplication::processEvents();
    const QTextBlock block = document->textDocument()->findBlockByNumber(state.range(0) == 2 ? 1000 : 1003);
    const int at = block.position() + int(state.range(0) == 2 ? block.text().indexOf(u' ') + 6 : block.text().indexOf(u']'));
    const QString key = state.range(0) == 2 ? QStringLiteral("s") : QStringLiteral("0");
    bool typed = false;
    double slowest = 0;
    for (auto _ : state) {
        const auto start = std::chrono::steady_clock::now();
        if (typed)
            QMetaObject::invokeMethod(editor.get(), "remove", Q_ARG(int, at), Q_ARG(int, at + 1));
        else
            QMetaObject::invokeMethod(editor.get(), "insert", Q_ARG(int, at), Q_ARG(QString, key));
        typed = !typed;
        const int cursor = at + (typed ? 1 : 0);
        if (editorWork) {
            benchmark::DoNotOptimize(highlighter.lineColumn(cursor));
            benchmark::DoNotOptimize(highlighter.bracketPair(cursor));
        }
        // What the edit left for the event loop belongs to the keystroke too.
        QCoreApplication::processEvents();
        slowest = std::max(slowest, std::chrono::duration<double, std::milli>(std::chrono::steady_clock::now() - start).count());
    }
    state.counters["slowest_ms"] = slowest;
}

} // namespace

BENCHMARK(strokeUnderClick)->Unit(benchmark::kMicrosecond);
BENCHMARK(keystrokeInLongProgram)->ArgName("editor_work")->DenseRange(0, 2)->Unit(benchmark::kMicrosecond);
