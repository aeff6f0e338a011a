#include "support/temporary_folder.h"

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <random>
#include <string>

#include "platform/file.h"

namespace velm::test {

namespace fs = std::filesystem;

TemporaryFolder::TemporaryFolder() {
    std::random_device random;
    fs::path folder;
    do {
        folder = fs::temp_directory_path() / ("velmora-test-" + std::to_string(random()) + std::to_string(random()));
    } while (!fs::create_directory(folder));
    path_ = WithSeparator(folder.u16string());
}

TemporaryFolder::~TemporaryFolder() {
    std::error_code ignored;
    fs::remove_all(fs::path(path_), ignored);
}

void TemporaryFolder::Write(CVelmStringView name, const Bytes& bytes) const {
    std::ofstream file(fs::path(PathOf(name)), std::ios::binary | std::ios::trunc);
    file.write(reinterpret_cast<const char*>(bytes.data()), static_cast<std::streamsize>(bytes.size()));
}

void TemporaryFolder::WriteText(CVelmStringView name, std::string_view text) const {
    Write(name, Bytes(text.begin(), text.end()));
}

Bytes TemporaryFolder::Read(CVelmStringView name) const {
    std::ifstream file(fs::path(PathOf(name)), std::ios::binary);
    return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
}

bool TemporaryFolder::Contains(CVelmStringView name) const {
    return fs::exists(fs::path(PathOf(name)));
}

std::vector<CVelmString> TemporaryFolder::Names() const {
    std::vector<CVelmString> names;
    for (const fs::directory_entry& entry : fs::directory_iterator(fs::path(path_))) {
        names.push_back(entry.path().filename().u16string());
    }
    std::sort(names.begin(), names.end());
    return names;
}

}  // namespace velm::test
