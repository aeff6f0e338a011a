// What a user waits for: from the commit of a typed value to the last row painted (the pause of the commit timer
// aside), a long list to come up, and a step of scrolling.
#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <functional>
#include <vector>

#include "platform/services.h"
#include "platform/wide_text_win32.h"
#include "resource.h"
#include "support/files.h"
#include "support/running_program.h"

namespace velm::test {
namespace {

using Clock = std::chrono::steady_clock;

constexpr int ROUNDS = 200;

/// Paints all pending updates.
void Paint(CVelmFrame& frame) {
    RedrawWindow(frame.Handle(), nullptr, nullptr, RDW_UPDATENOW | RDW_ALLCHILDREN);
    GdiFlush();
}

/// Runs an action repeatedly on the program's thread and measures the time.
void Measure(RunningProgram& program, const char* name, const std::function<void(CVelmFrame&, int)>& work) {
    std::vector<double> times;
    for (int round = 0; round < ROUNDS; ++round) {
        times.push_back(program.Ask([&work, round](CVelmFrame& frame) {
            const Clock::time_point start = Clock::now();
            work(frame, round);
            return std::chrono::duration<double, std::milli>(Clock::now() - start).count();
        }));
    }
    std::sort(times.begin(), times.end());
    const int rows = program.Ask([](CVelmFrame& frame) { return frame.List().RowCount(); });
    std::printf("%-28s %6d rows   least %7.2f ms   median %7.2f ms   95%% %7.2f ms\n", name, rows, times.front(),
                times[ROUNDS / 2], times[ROUNDS * 95 / 100]);
}

/// Types a value into the selected item, calculates and paints every row.
void CommitAndPaint(CVelmFrame& frame, int round) {
    SetWindowTextW(frame.Panel().Editor().Box().Handle(), std::to_wstring(1000 + round * 7).c_str());
    if (!frame.Panel().CommitValue(true)) {
        ADD_FAILURE() << "the value is not taken";
    }
    MSG message{};
    while (PeekMessageW(&message, frame.Handle(), WM_COMMAND, WM_COMMAND, PM_REMOVE)) {
        DispatchMessageW(&message);
    }
    Paint(frame);
}

/// Writes a file of units that are multiples of the first.
void SaveUnits(const RunningProgram& program, CVelmStringView title, std::size_t count) {
    CVelmConversionDoc document(SystemServices());
    document.title = document.fileName = title;
    for (std::size_t i = 0; i < count; ++i) {
        CVelmItem* const unit = document.AddItem(CreateItem(ITEM_VALUE));
        unit->name = unit->identifier = u"unit " + FromUtf8(std::to_string(i));
        if (i > 0) {
            CVelmConversion& conversion = *document.AddConversion(std::make_unique<CVelmConversion>(document));
            conversion.unit1 = document.GetItem(0);
            conversion.unit2 = unit;
            conversion.factor = 1.0 + static_cast<double>(i) / 7.0;
        }
    }
    ASSERT_TRUE(document.Save(program.DataFolder()));
}

TEST(WindowBench, WhatAUserWaitsFor) {
    RunningProgram program;
    const CVelmString length = FromUtf8(VELMORA_DATA_FOLDER "/Length.cnv");
    ASSERT_TRUE(CopyFileW(Wide(length), Wide(program.DataFolder() + u"Length.cnv"), TRUE));
    SaveUnits(program, u"Many", 2000);
    SaveUnits(program, u"Most", 10000);
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
    Measure(program, "commit to last row painted", CommitAndPaint);
    select(u"Many.cnv");
    Measure(program, "commit to last row painted", CommitAndPaint);
    select(u"Most.cnv");
    Measure(program, "commit to last row painted", CommitAndPaint);
    Measure(program, "set document and paint", [](CVelmFrame& frame, int) {
        frame.List().SetDocument(frame.Document());
        Paint(frame);
    });
    Measure(program, "scroll step and paint", [](CVelmFrame& frame, int round) {
        frame.List().ScrollTo(round + 1);
        Paint(frame);
    });
}

}  // namespace
}  // namespace velm::test

int main(int argc, char** argv) {
    SetProcessDPIAware();
    testing::InitGoogleTest(&argc, argv);
    return RUN_ALL_TESTS();
}
