#pragma once

#include <QString>

#include <cstdint>
#include <string>
#include <vector>

namespace zentrill {

/// One line of a review, as it is shown.
struct ReviewRow {
    enum class Kind : std::uint8_t {
        /// The tool that the lines below belong to.
        heading,
        /// What a removal names.
        item,
        /// What lies in it.
        entry,
        /// How many entries are not listed.
        more,
        /// A sentence.
        remark,
    };
    enum class Fate : std::uint8_t { none, goes, partly, stays, fails };

    /// Unique within the review, and unchanged while it is computed.
    std::string key;
    Kind kind = Kind::item;
    Fate fate = Fate::none;
    QString text;
    /// Null if it is not known.
    QString size;
    /// The fate and its reason in words.
    QString reason;

    bool operator==(const ReviewRow&) const = default;
};

/// What is known of a review.
struct ReviewContent {
    std::vector<ReviewRow> rows;
    /// The logical size of what goes and what the disk gets back, in words.
    QString going;
    QString comingFree;
    /// Whether nothing is missing any more.
    bool complete = false;

    bool operator==(const ReviewContent&) const = default;
};

} // namespace zentrill
