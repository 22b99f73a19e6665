#include "platform/PropertyList.h"

#include "platform/CResources.h"
#include "platform/PropertyListLimits.h"
#include "platform/RegularFile.h"
#include "platform/Text.h"
#include "platform/UnicodeText.h"

#include <plist/plist.h>

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string_view>
#include <type_traits>
#include <utility>

namespace zentrill {

namespace {

constexpr std::size_t maximumFileSize = std::size_t{16} * 1024 * 1024;

struct NodeDeleter {
    void operator()(plist_t node) const noexcept { ::plist_free(node); }
};

using Node = std::unique_ptr<std::remove_pointer_t<plist_t>, NodeDeleter>;

/// The parser takes only UTF-8 without a byte order mark; the format allows every encoding that has a mark.
FileReading readList(const std::string& path, FinalLink finalLink) {
    FileReading reading = readRegularFile(path, maximumFileSize, finalLink);
    if (reading.content) {
        // What is not text has no dictionary, just like an empty file.
        reading.content = withoutByteOrderMark(std::move(*reading.content)).value_or("");
    }
    return reading;
}

/// The dictionary that `data` describe within the limits, or null.
Node parsedDictionary(const std::string& data) {
    plist_t root = nullptr;
    const auto length = static_cast<std::uint32_t>(data.size());
    if (::plist_is_binary(data.data(), length) != 0) {
        ::plist_from_bin(data.data(), length, &root);
    } else {
        ::plist_from_xml(data.data(), length, &root);
    }
    Node node(root);
    if (node && ::plist_get_node_type(node.get()) != PLIST_DICT) {
        node.reset();
    }
    return node;
}

/// The dictionary to change: that of the file, or a new one if there is none; null if the item there must be
/// left alone.
Node dictionaryToChange(const std::string& path) {
    const FileReading reading = readList(path, FinalLink::refuse);
    if (!reading.content && !reading.missing) {
        return nullptr;
    }
    Node dictionary;
    if (reading.content) {
        if (!isWithinPropertyListLimits(*reading.content)) {
            return nullptr;
        }
        dictionary = parsedDictionary(*reading.content);
    }
    return dictionary ? std::move(dictionary) : Node(::plist_new_dict());
}

} // namespace

std::optional<std::string> propertyListString(const std::string& path, const std::string& key) {
    if (hasNul(key)) {
        return std::nullopt;
    }
    const FileReading reading = readList(path, FinalLink::follow);
    if (!reading.content || !isWithinPropertyListLimits(*reading.content)) {
        return std::nullopt;
    }
    const Node dictionary = parsedDictionary(*reading.content);
    if (!dictionary) {
        return std::nullopt;
    }
    std::uint64_t length = 0;
    // Null for a missing item and for one of another kind.
    const char* text = ::plist_get_string_ptr(::plist_dict_get_item(dictionary.get(), key.c_str()), &length);
    if (text == nullptr) {
        return std::nullopt;
    }
    return std::string(text, length);
}

bool setPropertyListString(const std::string& path, const std::string& key, const std::string& value) {
    if (hasNul(key) || hasNul(value)) {
        return false;
    }
    const Node dictionary = dictionaryToChange(path);
    if (!dictionary) {
        return false;
    }
    ::plist_dict_set_item(dictionary.get(), key.c_str(), ::plist_new_string(value.c_str()));
    char* xml = nullptr;
    std::uint32_t length = 0;
    ::plist_to_xml(dictionary.get(), &xml, &length);
    const MallocText owner(xml);
    return xml != nullptr && length <= maximumFileSize &&
           replaceRegularFile(path, std::string_view(xml, length));
}

} // namespace zentrill
