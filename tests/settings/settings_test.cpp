#include "settings/settings.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <optional>
#include <string>
#include <vector>

#include "model/catalog.h"
#include "platform/file.h"
#include "platform/options_store.h"
#include "support/test_services.h"

namespace velm::test {
namespace {

/// Keeps the bytes in memory; nothing stored, or another type, is nothing.
class MemoryOptions : public CVelmOptionsStore {
public:
    std::optional<std::vector<std::byte>> Read(std::size_t limit) override {
        return stored && stored->size() <= limit ? stored : std::nullopt;
    }
    std::int32_t Write(const void* bytes, std::size_t count) override {
        const auto* first = static_cast<const std::byte*>(bytes);
        stored.emplace(first, first + count);
        return status;
    }

    void Put(const CVelmSettings& settings, std::size_t size = sizeof(CVelmSettings)) {
        stored.emplace(size);
        const auto* first = reinterpret_cast<const std::byte*>(&settings);
        std::copy(first, first + std::min(size, sizeof settings), stored->begin());
    }

    std::optional<std::vector<std::byte>> stored;
    std::int32_t status = 0;
};

const CVelmString PROGRAM_FOLDER = WithSeparator(u"program");
const CVelmString DEFAULT_FOLDER = WithSeparator(PROGRAM_FOLDER + u"Conversions");

CVelmSettings Load(CVelmOptionsStore& store, const CVelmString& programFolder = PROGRAM_FOLDER) {
    CVelmSettings settings;
    LoadSettings(settings, store, programFolder);
    return settings;
}

/// The names of the list, each followed by a bar, up to the end that a reader sees.
std::string Names(const CVelmSettings& settings) {
    std::string names;
    CVelmStringView list = OpenFileList(settings);
    while (!list.empty() && list.front() != 0) {
        const CVelmStringView name = list.substr(0, list.find(u'\0'));
        names += ToUtf8(name) + "|";
        list.remove_prefix(std::min(name.size() + 1, list.size()));
    }
    return names;
}

constexpr const char* DEFAULT_NAMES = "Currency.cnv|Weight.cnv|Length.cnv|TipCalc.cal|TimeZones.cnv|ComputerBase.cnv|";

void SetOpenFiles(CVelmSettings& settings, CVelmStringView list) {
    std::copy(list.begin(), list.end(), settings.openFiles);
}

TEST(Settings, NothingStoredGivesTheDefaults) {
    MemoryOptions store;
    const CVelmSettings settings = Load(store);
    EXPECT_EQ(Names(settings), DEFAULT_NAMES);
    EXPECT_EQ(DataFolder(settings, PROGRAM_FOLDER), DEFAULT_FOLDER);
    EXPECT_EQ(ToUtf8(UpdateUrl(settings)), "http://updates.corvane.example/velm/convupd.txt");
    EXPECT_EQ(settings.twoLineRows, 0U);
}

TEST(Settings, TheRecordComesBackByteForByteAtItsOffsets) {
    CVelmSettings settings;
    SetOpenFiles(settings, CVelmStringView(u"A.cnv\0B.cal\0", 12));
    SetField(settings.dataFolder, WithSeparator(u"folder"));
    SetField(settings.updateUrl, u"http://example/\u00E9");
    settings.twoLineRows = 0x01020304;
    MemoryOptions store;
    EXPECT_EQ(SaveSettings(settings, store), 0);

    const auto& bytes = store.stored.value();
    ASSERT_EQ(bytes.size(), 900U);
    EXPECT_EQ(bytes[0], std::byte{'A'});
    EXPECT_EQ(bytes[384], std::byte{'f'});
    EXPECT_EQ(bytes[640], std::byte{'h'});
    EXPECT_EQ(bytes[640 + 2 * 15], std::byte{0xE9});
    EXPECT_EQ(bytes[896], std::byte{4});
    EXPECT_EQ(bytes[899], std::byte{1});

    const CVelmSettings loaded = Load(store);
    EXPECT_EQ(std::memcmp(&loaded, &settings, sizeof settings), 0);
    store.status = 5;
    EXPECT_EQ(SaveSettings(settings, store), 5);
}

TEST(Settings, ARecordOfAnotherSizeIsIgnoredWhole) {
    CVelmSettings stored;
    SetOpenFiles(stored, u"A.cnv");
    stored.twoLineRows = 1;
    MemoryOptions store;
    store.Put(stored);
    EXPECT_EQ(Names(Load(store)), "A.cnv|");
    for (const std::size_t size : {0, 899, 901}) {
        store.Put(stored, size);
        EXPECT_EQ(Names(Load(store)), DEFAULT_NAMES) << size << " bytes";
        EXPECT_EQ(Load(store).twoLineRows, 0U) << size << " bytes";
    }
}

TEST(Settings, EachEmptyFieldFallsBackAlone) {
    CVelmSettings stored;
    SetOpenFiles(stored, u"A.cnv");
    MemoryOptions store;
    store.Put(stored);
    CVelmSettings settings = Load(store);
    EXPECT_EQ(Names(settings), "A.cnv|");
    EXPECT_EQ(DataFolder(settings, PROGRAM_FOLDER), DEFAULT_FOLDER);
    EXPECT_EQ(UpdateUrl(settings), DEFAULT_UPDATE_URL);

    stored = {};
    SetField(stored.dataFolder, u"elsewhere");
    SetField(stored.updateUrl, u"http://mine/list.txt");
    store.Put(stored);
    settings = Load(store);
    EXPECT_EQ(Names(settings), DEFAULT_NAMES);
    EXPECT_EQ(DataFolder(settings, PROGRAM_FOLDER), WithSeparator(u"elsewhere"));
    EXPECT_EQ(ToUtf8(UpdateUrl(settings)), "http://mine/list.txt");
}

TEST(Settings, TextsOfARecordWithoutEndsAreEnded) {
    CVelmSettings stored;
    CVelmString endless(192, u'b');
    endless.replace(0, 6, CVelmStringView(u"A.cnv\0", 6));
    SetOpenFiles(stored, endless);
    std::fill(std::begin(stored.dataFolder), std::end(stored.dataFolder), u'd');
    std::fill(std::begin(stored.updateUrl), std::end(stored.updateUrl), u'u');
    MemoryOptions store;
    store.Put(stored);
    const CVelmSettings settings = Load(store);
    EXPECT_EQ(Names(settings), "A.cnv|") << "the name that runs out of the field is dropped, not cut";
    EXPECT_EQ(DataFolder(settings, PROGRAM_FOLDER), WithSeparator(CVelmString(127, u'd')));
    EXPECT_EQ(UpdateUrl(settings), CVelmString(127, u'u'));

    SetOpenFiles(stored, CVelmString(192, u'x'));
    store.Put(stored);
    EXPECT_EQ(Names(Load(store)), DEFAULT_NAMES);
}

TEST(Settings, AProgramFolderTooLongForTheFieldIsNotCut) {
    MemoryOptions store;
    const CVelmString folder = WithSeparator(CVelmString(200, u'p'));
    const CVelmSettings settings = Load(store, folder);
    EXPECT_EQ(settings.dataFolder[0], u'\0');
    EXPECT_EQ(DataFolder(settings, folder), WithSeparator(folder + u"Conversions"));
}

class OpenFileListTest : public testing::Test {
protected:
    void Add(const CVelmString& name, std::int32_t kind = KIND_CONVERSION) {
        auto document = CreateDocument(kind, services.Services());
        document->fileName = name;
        catalog.AddDocument(std::move(document));
    }

    std::string SavedNames() {
        CVelmSettings settings;
        std::fill(std::begin(settings.openFiles), std::end(settings.openFiles), u'?');
        SaveOpenFileList(settings, catalog);
        EXPECT_EQ(settings.openFiles[191], u'\0');
        EXPECT_EQ(settings.dataFolder[0], u'\0');
        return Names(settings);
    }

    TestServices services;
    CVelmCatalog catalog{services.Services()};
};

TEST_F(OpenFileListTest, HoldsTheFirstSixNamesInOrder) {
    EXPECT_EQ(SavedNames(), "");
    Add(u"Length");
    Add(u"TipCalc", KIND_CALCULATION);
    EXPECT_EQ(SavedNames(), "Length.cnv|TipCalc.cal|");
    for (const char16_t* name : {u"c", u"d", u"e", u"f", u"g"}) {
        Add(name);
    }
    EXPECT_EQ(SavedNames(), "Length.cnv|TipCalc.cal|c.cnv|d.cnv|e.cnv|f.cnv|");
}

TEST_F(OpenFileListTest, NeverCutsANameInHalf) {
    // With its extension and NUL each takes 45 units: four fit into 192, and a short one behind them.
    for (const char16_t letter : {u'a', u'b', u'c', u'd', u'e'}) {
        Add(CVelmString(40, letter));
    }
    Add(u"last");
    std::string expected;
    for (const char letter : {'a', 'b', 'c', 'd'}) {
        expected += std::string(40, letter) + ".cnv|";
    }
    EXPECT_EQ(SavedNames(), expected + "last.cnv|");
}

}  // namespace
}  // namespace velm::test
