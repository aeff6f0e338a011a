#include <gtest/gtest.h>
#include <windows.h>

#include <string>

#include "platform/options_store.h"

namespace velm::test {
namespace {

constexpr const wchar_t* KEY = L"Software\\Corvane\\Velmora\\OptionsStoreTest";

TEST(RegistryOptions, KeepBinaryBytesUpToTheLimitAndAreNothingOfAnotherType) {
    RegDeleteKeyW(HKEY_CURRENT_USER, KEY);
    const auto store = OpenOptionsStore(reinterpret_cast<const char16_t*>(KEY));
    const auto readBack = [&] {
        const auto bytes = store->Read(900);
        return bytes ? std::string(reinterpret_cast<const char*>(bytes->data()), bytes->size()) : "<nothing>";
    };
    EXPECT_EQ(readBack(), "<nothing>");
    EXPECT_EQ(store->Write("first", 5), 0);
    EXPECT_EQ(store->Write("second", 6), 0);
    EXPECT_EQ(readBack(), "second");
    const std::string bytes(901, 'x');
    for (const DWORD size : {899, 900, 901}) {
        for (const DWORD type : {REG_BINARY, REG_SZ, REG_EXPAND_SZ, REG_MULTI_SZ, REG_NONE}) {
            RegSetKeyValueW(HKEY_CURRENT_USER, KEY, L"Options", type, bytes.data(), size);
            EXPECT_EQ(readBack(), type == REG_BINARY && size <= 900 ? bytes.substr(0, size) : "<nothing>")
                << size << " bytes of type " << type;
        }
    }
    RegDeleteKeyW(HKEY_CURRENT_USER, KEY);
    EXPECT_EQ(DefaultOptionsLocation(), u"Software\\Corvane\\Velmora\\Settings");
}

}  // namespace
}  // namespace velm::test
