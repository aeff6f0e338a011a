#include "settings/settings.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>

#include "platform/file.h"
#include "support/memory_options.h"

namespace velm::test {
namespace {

const CVelmString PROGRAM_FOLDER = WithSeparator(u"program");
const std::string DEFAULT_PLACES =
    " " + ToUtf8(WithSeparator(PROGRAM_FOLDER + u"Conversions")) + " http://updates.corvane.example/velm/convupd.txt";
const std::string DEFAULT_NAMES = "Currency.cnv|Weight.cnv|Length.cnv|TipCalc.cal|TimeZones.cnv|ComputerBase.cnv|";

CVelmSettings Load(MemoryOptions& store, const CVelmString& programFolder = PROGRAM_FOLDER) {
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

/// "names folder url", and whether rows take two lines.
std::string Text(const CVelmSettings& settings) {
    return Names(settings) + " " + ToUtf8(DataFolder(settings, PROGRAM_FOLDER) + u" " + UpdateUrl(settings)) +
           (settings.twoLineRows != 0 ? " two" : "");
}

template <std::size_t SIZE>
void Fill(char16_t (&field)[SIZE], CVelmStringView text) {
    std::copy(text.begin(), text.end(), field);
}

TEST(Settings, TheRecordComesBackByteForByteAtItsOffsets) {
    CVelmSettings settings;
    Fill(settings.openFiles, CVelmStringView(u"A.cnv\0B.cal\0", 12));
    SetField(settings.dataFolder, WithSeparator(u"folder"));
    SetField(settings.updateUrl, u"http://example/\u00E9");
    settings.twoLineRows = 0x01020304;
    MemoryOptions store;
    EXPECT_EQ(SaveSettings(settings, store), 0);
    const auto& bytes = store.stored.value();
    ASSERT_EQ(bytes.size(), 900U);
    for (const auto& [offset, byte] : {std::pair(0, 'A'), {384, 'f'}, {640, 'h'}, {670, '\xE9'}, {896, 4}, {899, 1}}) {
        EXPECT_EQ(bytes[static_cast<std::size_t>(offset)], std::byte(byte)) << offset;
    }
    const CVelmSettings loaded = Load(store);
    EXPECT_EQ(std::memcmp(&loaded, &settings, sizeof settings), 0);
    store.status = 5;
    EXPECT_EQ(SaveSettings(settings, store), 5);

    for (const std::size_t size : {0, 899, 901}) {
        store.stored->resize(size);
        EXPECT_EQ(Text(Load(store)), DEFAULT_NAMES + DEFAULT_PLACES) << size;
    }
}

TEST(Settings, EachEmptyFieldFallsBackAloneAndTextsWithoutEndsAreEnded) {
    MemoryOptions store;
    EXPECT_EQ(Text(Load(store)), DEFAULT_NAMES + DEFAULT_PLACES);
    CVelmSettings stored;
    Fill(stored.openFiles, u"A.cnv");
    SaveSettings(stored, store);
    EXPECT_EQ(Text(Load(store)), "A.cnv|" + DEFAULT_PLACES);

    stored = {};
    SetField(stored.dataFolder, u"e");
    SetField(stored.updateUrl, u"http://mine/list.txt");
    SaveSettings(stored, store);
    EXPECT_EQ(Text(Load(store)), DEFAULT_NAMES + " " + ToUtf8(WithSeparator(u"e")) + " http://mine/list.txt");

    Fill(stored.openFiles, CVelmString(192, u'x'));
    Fill(stored.dataFolder, CVelmString(128, u'd'));
    Fill(stored.updateUrl, CVelmString(128, u'u'));
    SaveSettings(stored, store);
    const CVelmString folder = WithSeparator(CVelmString(127, u'd'));
    EXPECT_EQ(Text(Load(store)), DEFAULT_NAMES + " " + ToUtf8(folder) + " " + std::string(127, 'u'));
    Fill(stored.openFiles, CVelmStringView(u"A.cnv\0", 6));
    SaveSettings(stored, store);
    EXPECT_EQ(Names(Load(store)), "A.cnv|") << "the name that runs out of the field is dropped, not cut";

    MemoryOptions empty;
    const CVelmString longFolder = WithSeparator(CVelmString(200, u'p'));
    const CVelmSettings settings = Load(empty, longFolder);
    EXPECT_EQ(settings.dataFolder[0], u'\0') << "a program folder too long for the field is not cut";
    EXPECT_EQ(DataFolder(settings, longFolder), WithSeparator(longFolder + u"Conversions"));
}

}  // namespace
}  // namespace velm::test
