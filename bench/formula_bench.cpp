// Formulas: from text to value, and again with another x, beside muParser in the same process.

#include <benchmark/benchmark.h>
#include <muParser.h>

#include <array>
#include <string>

#include "formula/formula.h"
#include "platform/text.h"

namespace velm {
namespace {

constexpr std::array<const char*, 4> TEXTS = {"x*2.54", "(x-32)*5/9", "x^2+3*x-7/(x+1)", "sin(x)*cos(x)+sqrt(abs(x))"};

const char* TextOf(const benchmark::State& state) {
    return TEXTS[static_cast<std::size_t>(state.range(0))];
}

/// A new x for every evaluation, so that none can be kept from the last.
double InputOf(std::size_t round) {
    return 0.5 + 0.03125 * static_cast<double>(round % 64);
}

void EvaluateText(benchmark::State& state) {
    FormulaContext context(SystemClock());
    const CVelmString text = FromUtf8(TextOf(state));
    std::size_t round = 0;
    double result = 0.0;
    for (auto _ : state) {
        context.BindX(InputOf(round++));
        if (!EvaluateFormula(context, text, result)) {
            state.SkipWithError("does not evaluate");
            break;
        }
        benchmark::DoNotOptimize(result);
    }
    state.SetLabel(TextOf(state));
}

void EvaluateTextMuParser(benchmark::State& state) {
    mu::Parser parser;
    const std::string text = TextOf(state);
    std::size_t round = 0;
    double x = 0.0;
    parser.DefineVar("x", &x);
    for (auto _ : state) {
        x = InputOf(round++);
        parser.SetExpr(text);
        benchmark::DoNotOptimize(parser.Eval());
    }
    state.SetLabel(text);
}

void EvaluateAgain(benchmark::State& state) {
    FormulaContext context(SystemClock());
    const CVelmFormula formula(FromUtf8(TextOf(state)));
    std::size_t round = 0;
    double result = 0.0;
    for (auto _ : state) {
        context.BindX(InputOf(round++));
        if (!formula.Evaluate(context, result)) {
            state.SkipWithError("does not evaluate");
            break;
        }
        benchmark::DoNotOptimize(result);
    }
    state.SetLabel(TextOf(state));
}

void EvaluateAgainMuParser(benchmark::State& state) {
    mu::Parser parser;
    const std::string text = TextOf(state);
    std::size_t round = 0;
    double x = 0.0;
    parser.DefineVar("x", &x);
    parser.SetExpr(text);
    benchmark::DoNotOptimize(parser.Eval());
    for (auto _ : state) {
        x = InputOf(round++);
        benchmark::DoNotOptimize(parser.Eval());
    }
    state.SetLabel(text);
}

BENCHMARK(EvaluateText)->DenseRange(0, 3);
BENCHMARK(EvaluateTextMuParser)->DenseRange(0, 3);
BENCHMARK(EvaluateAgain)->DenseRange(0, 3);
BENCHMARK(EvaluateAgainMuParser)->DenseRange(0, 3);

}  // namespace
}  // namespace velm
