#pragma once

#include <cstdint>
#include <cstring>

#include "platform/text.h"
#include "support/temporary_folder.h"

namespace velm::test {

/// Builds the bytes of a data file piece by piece.
class FileBytes {
public:
    FileBytes& Int(std::uint32_t value) { return Raw(&value, sizeof value); }
    FileBytes& Double(double value) { return Raw(&value, sizeof value); }
    FileBytes& Text(CVelmStringView text) {
        return Int(static_cast<std::uint32_t>(text.size())).Raw(text.data(), text.size() * sizeof(char16_t));
    }

    /// Magic, room for the size, and the header's texts.
    FileBytes& Header(CVelmStringView updated, CVelmStringView title, CVelmStringView category) {
        return Int(0xC040A010).Int(0).Text(updated).Text(title).Text(category);
    }

    /// A current item of type 1 that allows decimal numbers only.
    FileBytes& Unit(CVelmStringView name, CVelmStringView identifier = {}) {
        return Int(1).Text(name).Text(identifier).Text({}).Int(1).Int(1).Int(1).Int(1);
    }

    FileBytes& Linear(std::uint32_t unit1, std::uint32_t unit2, double factor, double offset = 0.0) {
        return Int(0).Int(unit1).Int(unit2).Double(factor).Double(offset);
    }

    /// The bytes as they are.
    const Bytes& Get() const { return bytes_; }

    /// The bytes with their length as the size word.
    Bytes Sized() const {
        Bytes sized = bytes_;
        const auto size = static_cast<std::uint32_t>(sized.size());
        std::memcpy(sized.data() + 4, &size, sizeof size);
        return sized;
    }

private:
    FileBytes& Raw(const void* data, std::size_t count) {
        const auto* bytes = static_cast<const std::uint8_t*>(data);
        bytes_.insert(bytes_.end(), bytes, bytes + count);
        return *this;
    }

    Bytes bytes_;
};

}  // namespace velm::test
