#pragma once

#include <optional>
#include <string>

/// Single values of property list files, the dictionaries in which bundles describe themselves and programs
/// keep their settings. Keys and values are UTF-8 texts.
namespace zentrill {

/// The string under `key` in the dictionary of the file at `path`, which may be in XML or binary form; XML
/// may be UTF-8, or UTF-16 or UTF-32 with a byte order mark. Nothing if the file is missing, cannot be read,
/// is not a regular file, is larger than 16 MiB, is nested or cross-linked beyond reason or is not a
/// dictionary, or if the key is missing or holds something else. Never blocks.
[[nodiscard]] std::optional<std::string> propertyListString(const std::string& path, const std::string& key);

/// Puts `value` under `key`, keeps all other keys, and writes the file as XML in one step, readable by its
/// owner alone. A missing file is made, with its parent folders; one that holds no dictionary is replaced.
/// False if nothing was written: because of an error, or because the item at `path` is not a regular file,
/// cannot be read or is beyond the limits above, so that more could be lost than a broken file.
[[nodiscard]] bool setPropertyListString(const std::string& path, const std::string& key,
                                         const std::string& value);

} // namespace zentrill
