#include <benchmark/benchmark.h>

#include <cstdint>
#include <filesystem>
#include <random>
#include <string>

#include "model/catalog.h"
#include "platform/services.h"

namespace {

using namespace velm;

/// A folder of data files with 20 units each, on the disk of this machine; removed at the end.
class DataFolder {
public:
    explicit DataFolder(std::int64_t files)
        : path_(std::filesystem::temp_directory_path() / ("velmora-bench-" + std::to_string(std::random_device()()))) {
        std::filesystem::create_directory(path_);
        for (std::int64_t number = 0; number < files; ++number) {
            CVelmConversionDoc document(SystemServices());
            document.fileName = FromUtf8("File " + std::to_string(number));
            document.title = document.fileName;
            document.category = FromUtf8("Category " + std::to_string(number % 20));
            for (int unit = 0; unit < 20; ++unit) {
                document.AddItem(CreateItem(ITEM_VALUE))->name = FromUtf8("unit " + std::to_string(unit));
            }
            document.Save(Path());
        }
    }
    ~DataFolder() { std::filesystem::remove_all(path_); }
    DataFolder(const DataFolder&) = delete;
    DataFolder& operator=(const DataFolder&) = delete;

    CVelmString Path() const { return WithSeparator(path_.u16string()); }

private:
    std::filesystem::path path_;
};

/// What a start of the program does with its folder.
void ScanFolder(benchmark::State& state) {
    const DataFolder folder(state.range(0));
    for (auto _ : state) {
        CVelmCatalog catalog(SystemServices());
        catalog.SetFolder(folder.Path());
        catalog.ScanFolder();
        if (catalog.documents.size() != static_cast<std::size_t>(state.range(0))) {
            state.SkipWithError("files are missing from the catalog");
        }
    }
    state.SetItemsProcessed(state.iterations() * state.range(0));
}
BENCHMARK(ScanFolder)->Arg(200)->Arg(2000)->Unit(benchmark::kMillisecond);

}  // namespace
