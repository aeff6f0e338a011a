// Questions: from text to answer within a session, beside a formula of muParser's in the same process.

#include <benchmark/benchmark.h>
#include <muParser.h>

#include <array>
#include <cstdlib>
#include <string>

#include "ask/questions.h"
#include "platform/file.h"

namespace velm {
namespace {

constexpr std::array<const char*, 8> QUESTIONS = {
    "26.2 mi in km", "350 F in C",     "3 kg * 9.81 m/s^2 in lbf", "1200 W * 5 h * 0.32 eur/kWh",
    "5'11\" in cm",  "100 usd in eur", "tip 64.50 18% 3 people",   "dec 25 - today"};

/// The folder of VELMORA_DATA, or the one beside the program of the release build.
CVelmString DataFolder() {
    const char* const folder = std::getenv("VELMORA_DATA");
    return WithSeparator(FromUtf8(folder != nullptr ? folder : "build/release/Conversions"));
}

void AskInSession(benchmark::State& state) {
    FormulaContext context(SystemClock());
    CVelmQuestions questions(SystemServices(), context, DataFolder());
    const CVelmString question = FromUtf8(QUESTIONS[static_cast<std::size_t>(state.range(0))]);
    for (auto _ : state) {
        CVelmAnswer answer = questions.Ask(question);
        if (!answer.ok) {
            state.SkipWithError(ToUtf8(answer.fault.message).c_str());
            break;
        }
        benchmark::DoNotOptimize(answer);
    }
    state.SetLabel(QUESTIONS[static_cast<std::size_t>(state.range(0))]);
}
BENCHMARK(AskInSession)->DenseRange(0, QUESTIONS.size() - 1);

/// The nearest that muParser has: the same numbers with the factors written out.
void EvaluateFactorsMuParser(benchmark::State& state) {
    mu::Parser parser;
    const std::string text = "3*9.81/4.4482216152605";
    for (auto _ : state) {
        parser.SetExpr(text);
        benchmark::DoNotOptimize(parser.Eval());
    }
    state.SetLabel(text);
}
BENCHMARK(EvaluateFactorsMuParser);

}  // namespace
}  // namespace velm
