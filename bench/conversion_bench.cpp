#include <benchmark/benchmark.h>

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <utility>

#include "model/calculation_document.h"
#include "model/conversion_document.h"

namespace {

using namespace velm;

/// A conversion file with that many units; the last one is the one entered.
class Bench {
public:
    explicit Bench(std::size_t units) {
        for (std::size_t i = 0; i < units; ++i) {
            document.AddItem(CreateItem(ITEM_VALUE));
        }
        document.currentItem = document.items.back().get();
        document.currentItem->state = STATE_VALID;
    }

    CVelmConversion& Join(std::size_t unit1, std::size_t unit2, double factor) {
        CVelmConversion& conversion = *document.AddConversion(std::make_unique<CVelmConversion>(document));
        conversion.unit1 = document.GetItem(unit1);
        conversion.unit2 = document.GetItem(unit2);
        conversion.factor = factor;
        return conversion;
    }

    /// Recalculates for another value each time, as on a keystroke; counts units a second.
    void Run(benchmark::State& state) {
        FormulaContext context(SystemClock());
        for (auto _ : state) {
            document.currentItem->value += 1.0;
            document.Recalculate(context);
            benchmark::DoNotOptimize(document.items.front()->value);
        }
        state.SetItemsProcessed(state.iterations() * static_cast<std::int64_t>(document.ItemCount()));
    }

    CVelmConversionDoc document{SystemServices()};
};

/// Every unit joined to unit 0, as a file of units and their base is.
void RecalculateHub(benchmark::State& state) {
    const auto units = static_cast<std::size_t>(state.range(0));
    Bench bench(units);
    for (std::size_t i = 1; i < units; ++i) {
        bench.Join(0, i, static_cast<double>(i));
    }
    bench.Run(state);
}
BENCHMARK(RecalculateHub)->Arg(30)->Arg(1000)->Arg(10000)->Unit(benchmark::kMicrosecond);

/// The same with a pair of formulas to every unit, as in a file of temperatures.
void RecalculateFormulaHub(benchmark::State& state) {
    const auto units = static_cast<std::size_t>(state.range(0));
    Bench bench(units);
    for (std::size_t i = 1; i < units; ++i) {
        CVelmConversion& conversion = bench.Join(0, i, 1.0);
        conversion.formulaFlag = 1;
        conversion.forwardFormula = u"(x-32)*5/9";
        conversion.reverseFormula = u"x*9/5+32";
    }
    bench.Run(state);
}
BENCHMARK(RecalculateFormulaHub)->Arg(30)->Arg(10000)->Unit(benchmark::kMicrosecond);

/// Each unit joined to the next only: the first target is as many bridges away as there are units.
void RecalculateChain(benchmark::State& state) {
    const auto units = static_cast<std::size_t>(state.range(0));
    Bench bench(units);
    for (std::size_t i = 1; i < units; ++i) {
        bench.Join(i - 1, i, 1.0).offset = 1.0;
    }
    bench.Run(state);
}
BENCHMARK(RecalculateChain)->Arg(50000)->Unit(benchmark::kMicrosecond);

/// All units joined to each other, and the one entered to none of them, or to one by a formula that leads away only.
void RecalculateDenseUnreachable(benchmark::State& state) {
    const auto units = static_cast<std::size_t>(state.range(0));
    Bench bench(units);
    for (std::size_t i = 0; i + 1 < units; ++i) {
        for (std::size_t j = 0; j < i; ++j) {
            bench.Join(j, i, 1.0);
        }
    }
    if (state.range(1) != 0) {
        CVelmConversion& oneWay = bench.Join(0, units - 1, 1.0);
        oneWay.formulaFlag = 1;
        oneWay.forwardFormula = u"x";
    }
    bench.Run(state);
}
BENCHMARK(RecalculateDenseUnreachable)->Args({301, 0})->Args({301, 1})->Unit(benchmark::kMicrosecond);

/// A calculation file in which each output uses the next one, so that each needs the sweep after that one's.
void RecalculateOutputsInReverseOrder(benchmark::State& state) {
    CVelmCalculationDoc document(SystemServices());
    const auto name = [](std::int64_t i) { return FromUtf8("v" + std::to_string(i)); };
    for (std::int64_t i = 0; i <= state.range(0); ++i) {
        auto item = std::make_unique<CVelmFormulaItem>();
        item->identifier = name(i);
        item->output = i < state.range(0) ? 1 : 0;
        item->valueText = i < state.range(0) ? name(i + 1) + u"+1" : u"0";
        document.AddItem(std::move(item));
    }
    FormulaContext context(SystemClock());
    for (auto _ : state) {
        document.Recalculate(context);
        benchmark::DoNotOptimize(document.items.front()->value);
    }
}
BENCHMARK(RecalculateOutputsInReverseOrder)->Arg(20)->Arg(2000)->Arg(20000)->Unit(benchmark::kMicrosecond);

}  // namespace
