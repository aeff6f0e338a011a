#include <gtest/gtest.h>
#include <windows.h>

#include <string>

#include "platform/options_store.h"

namespace velm::test {
namespace {

constexpr const wchar_t* KEY = L"Software\\Corvane\\Velmora\\OptionsStoreTest";

class RegistryOptions : public testing::Test {
protected:
    RegistryOptions() { RegDeleteKeyW(HKEY_CURRENT_USER, KEY); }
    ~RegistryOptions() override { RegDeleteKeyW(HKEY_CURRENT_USER, KEY); }

    std::string ReadBack(std::size_t limit) {
        const auto bytes = store->Read(limit);
        return bytes ? std::string(reinterpret_cast<const char*>(bytes->data()), bytes->size()) : "<nothing>";
    }

    static void Put(DWORD type, const std::string& bytes) {
        RegSetKeyValueW(HKEY_CURRENT_USER, KEY, L"Options", type, bytes.data(), static_cast<DWORD>(bytes.size()));
    }

    std::unique_ptr<CVelmOptionsStore> store = OpenOptionsStore(reinterpret_cast<const char16_t*>(KEY));
};

TEST_F(RegistryOptions, KeepBinaryBytesUpToTheLimit) {
    EXPECT_EQ(ReadBack(900), "<nothing>");
    EXPECT_EQ(store->Write("first", 5), 0);
    EXPECT_EQ(store->Write("second", 6), 0);
    EXPECT_EQ(ReadBack(900), "second");

    for (const std::size_t size : {899, 900}) {
        Put(REG_BINARY, std::string(size, 'x'));
        EXPECT_EQ(ReadBack(900).size(), size);
    }
    Put(REG_BINARY, std::string(901, 'x'));
    EXPECT_EQ(ReadBack(900), "<nothing>");
}

TEST_F(RegistryOptions, AreNothingWhenOfAnotherType) {
    for (const DWORD type : {REG_SZ, REG_EXPAND_SZ, REG_MULTI_SZ, REG_NONE}) {
        Put(type, std::string(900, '\0'));
        EXPECT_EQ(ReadBack(900), "<nothing>") << "type " << type;
    }
    EXPECT_EQ(DefaultOptionsLocation(), u"Software\\Corvane\\Velmora\\Settings");
}

}  // namespace
}  // namespace velm::test
