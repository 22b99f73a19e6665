#pragma once

#include "platform/PropertyList.h"
#include "support/TemporaryDirectory.h"

#include <gtest/gtest.h>
#include <plist/plist.h>

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace zentrill::test {

inline constexpr const char* xmlHead = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
                                       "<!DOCTYPE plist PUBLIC \"-//Apple//DTD PLIST 1.0//EN\" "
                                       "\"http://www.apple.com/DTDs/PropertyList-1.0.dtd\">\n"
                                       "<plist version=\"1.0\">\n";

inline std::string xmlList(const std::string& body) {
    return std::string(xmlHead).append(body).append("\n</plist>\n");
}

inline std::string infoList() {
    return xmlList("<dict><key>CFBundleName</key><string>A &amp; B</string>"
                   "<key>CFBundleIdentifier</key><string>com.user.Zentrill</string>"
                   "<key>Count</key><integer>7</integer><key>When</key><date>2024-05-06T07:08:09Z</date>"
                   "<key>Bytes</key><data>AAEC</data><key>On</key><true/>"
                   "<key>List</key><array><string>x</string><dict/></array></dict>");
}

inline std::string binaryForm(const std::string& xml) {
    plist_t root = nullptr;
    plist_from_xml(xml.data(), static_cast<std::uint32_t>(xml.size()), &root);
    char* data = nullptr;
    std::uint32_t length = 0;
    plist_to_bin(root, &data, &length);
    plist_free(root);
    std::string binary(data, length);
    plist_to_bin_free(data);
    return binary;
}

/// A binary list of the objects as they stand, the first one on top; references and offsets take two bytes.
inline std::string binaryList(const std::vector<std::string>& objects) {
    const auto bigEndian = [](std::size_t value, int size) {
        std::string text;
        for (int shift = 8 * (size - 1); shift >= 0; shift -= 8) {
            text += static_cast<char>(value >> shift & 0xFFU);
        }
        return text;
    };
    std::string data = "bplist00";
    std::string offsets;
    for (const std::string& object : objects) {
        offsets += bigEndian(data.size(), 2);
        data += object;
    }
    const std::size_t table = data.size();
    return data + offsets + std::string(6, '\0') + "\x02\x02" + bigEndian(objects.size(), 8) +
           bigEndian(0, 8) + bigEndian(table, 8);
}

/// A container object: its marker, then its references.
inline std::string container(const std::string& marker, const std::vector<std::size_t>& references) {
    std::string object = marker;
    for (const std::size_t index : references) {
        object += static_cast<char>(index >> 8U);
        object += static_cast<char>(index & 0xFFU);
    }
    return object;
}

class PropertyListFixture : public testing::Test {
protected:
    /// What the key K of a dictionary holds whose other key leads to the objects given; K is object 1.
    [[nodiscard]] std::optional<std::string> keyBeside(const std::vector<std::string>& objects) const {
        std::vector<std::string> all{container("\xD2", {1, 3, 2, 4}), "\x51K", "\x51v", "\x51L"};
        all.insert(all.end(), objects.begin(), objects.end());
        return propertyListString(folder.makeFile("list.plist", binaryList(all)), "K");
    }

    TemporaryDirectory folder;
};

} // namespace zentrill::test
