// From the commit of a typed value to the last row painted: what a user waits for after the last key, the pause of
// the commit timer aside.
#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <vector>

#include "app/wide_text.h"
#include "platform/services.h"
#include "resource.h"
#include "support/files.h"
#include "support/running_program.h"

namespace velm::test {
namespace {

using Clock = std::chrono::steady_clock;

constexpr int ROUNDS = 200;

/// Types a value into the selected item and waits until every row is painted. Milliseconds.
double CommitAndPaint(CVelmFrame& frame, int round) {
    SetWindowTextW(frame.Panel().Editor().Box().Handle(), std::to_wstring(1000 + round * 7).c_str());
    const Clock::time_point start = Clock::now();
    if (!frame.Panel().CommitValue(true)) {
        ADD_FAILURE() << "the value is not taken";
    }
    MSG message{};
    while (PeekMessageW(&message, frame.Handle(), WM_COMMAND, WM_COMMAND, PM_REMOVE)) {
        DispatchMessageW(&message);
    }
    RedrawWindow(frame.Handle(), nullptr, nullptr, RDW_UPDATENOW | RDW_ALLCHILDREN);
    GdiFlush();
    return std::chrono::duration<double, std::milli>(Clock::now() - start).count();
}

void Measure(RunningProgram& program, const char* name) {
    std::vector<double> times;
    int rows = 0;
    for (int round = 0; round < ROUNDS; ++round) {
        times.push_back(program.Ask([round](CVelmFrame& frame) { return CommitAndPaint(frame, round); }));
    }
    program.Ask([&rows](CVelmFrame& frame) { rows = frame.List().RowCount(); });
    std::sort(times.begin(), times.end());
    std::printf("%-8s %5d rows   median %7.2f ms   95%% %7.2f ms   most %7.2f ms\n", name, rows, times[ROUNDS / 2],
                times[ROUNDS * 95 / 100], times.back());
}

TEST(WindowBench, CommitToLastRowPainted) {
    RunningProgram program;
    const CVelmString length = FromUtf8(VELMORA_DATA_FOLDER "/Length.cnv");
    ASSERT_TRUE(CopyFileW(Wide(length), Wide(program.DataFolder() + u"Length.cnv"), TRUE));
    std::vector<CVelmString> names;
    for (int i = 0; i < 2000; ++i) {
        names.push_back(u"unit " + FromUtf8(std::to_string(i)));
    }
    std::vector<UnitFactor> units;
    for (const CVelmString& name : names) {
        units.push_back({name, 1.0 + static_cast<double>(units.size()) / 7.0, name});
    }
    SaveConversionFile(program, u"Many", units);
    ASSERT_TRUE(program.Start());
    const auto select = [&program](CVelmStringView file) {
        program.Ask([file](CVelmFrame& frame) {
            CVelmDocument* const document = frame.Catalog().GetDocument(file, false);
            frame.SelectFile(document);
            for (const auto& item : document->items) {
                item->shown = 1;
            }
            frame.List().SetDocument(document);
        });
        program.Settle();
    };
    select(u"Length.cnv");
    Measure(program, "Length");
    select(u"Many.cnv");
    Measure(program, "Many");
}

}  // namespace
}  // namespace velm::test

int main(int argc, char** argv) {
    SetProcessDPIAware();
    testing::InitGoogleTest(&argc, argv);
    return RUN_ALL_TESTS();
}
