#include "platform/PropertyListLimits.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <vector>

namespace zentrill {

namespace {

/// Far above any real list, far below what overflows the smallest thread stack (512 KiB).
constexpr std::size_t maximumDepth = 512;
constexpr std::size_t maximumXmlContainers = 1024;
constexpr std::size_t maximumXmlTags = 400'000;
constexpr std::size_t maximumBinaryNodes = 100'000;

constexpr std::string_view binaryMagic = "bplist00";
constexpr std::size_t trailerSize = 32;

std::size_t countOf(std::string_view text, std::string_view data) {
    std::size_t count = 0;
    for (std::size_t at = data.find(text); at != std::string_view::npos;
         at = data.find(text, at + text.size())) {
        ++count;
    }
    return count;
}

/// Counts the nodes of the tree that a binary list unfolds into. The file's layout: magic, objects, a table
/// of the objects' offsets, and a trailer that tells the sizes of offsets and references, the number of
/// objects, the top object and where the table starts. All numbers are big-endian.
class BinaryTree {
public:
    explicit BinaryTree(std::string_view data) : data_(data) {}

    /// False for a tree beyond the limits, for a cycle, and for a file that contradicts itself.
    [[nodiscard]] bool isWithinLimits() {
        if (data_.size() < binaryMagic.size() + trailerSize) {
            return false;
        }
        const std::size_t trailer = data_.size() - trailerSize;
        offsetSize_ = byte(trailer + 6);
        referenceSize_ = byte(trailer + 7);
        const std::optional<std::size_t> objects = number(trailer + 8, 8);
        const std::optional<std::size_t> top = number(trailer + 16, 8);
        const std::optional<std::size_t> table = number(trailer + 24, 8);
        // An object takes at least a byte, so a count beyond the file's size is wrong.
        if (!objects || !top || !table || *objects > data_.size() || *table > data_.size()) {
            return false;
        }
        table_ = *table;
        subtrees_.assign(*objects, {});
        return subtree(*top, 0).has_value();
    }

private:
    struct Subtree {
        /// All nodes, once for each reference to them; 0 before they are counted.
        std::size_t nodes = 0;
        std::size_t height = 0;
    };

    [[nodiscard]] std::size_t byte(std::size_t at) const {
        return static_cast<std::size_t>(static_cast<unsigned char>(data_[at]));
    }

    [[nodiscard]] std::optional<std::size_t> number(std::size_t at, std::size_t size) const {
        if (size == 0 || size > sizeof(std::uint64_t) || at > data_.size() || size > data_.size() - at) {
            return std::nullopt;
        }
        std::uint64_t value = 0;
        for (std::size_t index = 0; index < size; ++index) {
            value = value << 8U | byte(at + index);
        }
        return value;
    }

    /// The tree of the object at `index`, or nothing beyond the limits; the limit of the depth ends a cycle.
    std::optional<Subtree> subtree(std::size_t index, std::size_t depth) {
        if (index >= subtrees_.size() || depth > maximumDepth) {
            return std::nullopt;
        }
        if (subtrees_[index].nodes == 0) {
            const std::optional<Subtree> counted = countedSubtree(index, depth);
            if (!counted) {
                return std::nullopt;
            }
            subtrees_[index] = *counted;
        }
        return subtrees_[index];
    }

    std::optional<Subtree> countedSubtree(std::size_t index, std::size_t depth) {
        const std::optional<std::size_t> offset = number(table_ + (index * offsetSize_), offsetSize_);
        if (!offset || *offset >= data_.size()) {
            return std::nullopt;
        }
        constexpr std::size_t arrayKind = 0xA;
        constexpr std::size_t setKind = 0xC;
        constexpr std::size_t dictionaryKind = 0xD;
        const std::size_t kind = byte(*offset) >> 4U;
        if (kind != arrayKind && kind != setKind && kind != dictionaryKind) {
            return Subtree{.nodes = 1, .height = 1};
        }
        std::size_t references = *offset + 1;
        std::optional<std::size_t> count = byte(*offset) & 0xFU;
        if (count == 0xFU) {
            // The count did not fit: an integer object of 2^n bytes follows.
            if (references >= data_.size() || byte(references) >> 4U != 1) {
                return std::nullopt;
            }
            const std::size_t size = std::size_t{1} << (byte(references) & 0xFU);
            count = number(references + 1, size);
            references += 1 + size;
        }
        if (!count || *count > data_.size()) {
            return std::nullopt;
        }
        if (kind == dictionaryKind) {
            *count *= 2;
        }
        Subtree whole{.nodes = 1, .height = 1};
        for (std::size_t child = 0; child < *count; ++child) {
            const std::optional<std::size_t> childIndex =
                number(references + (child * referenceSize_), referenceSize_);
            const std::optional<Subtree> below = childIndex ? subtree(*childIndex, depth + 1) : std::nullopt;
            if (!below) {
                return std::nullopt;
            }
            whole.nodes += below->nodes;
            whole.height = std::max(whole.height, below->height + 1);
            if (whole.nodes > maximumBinaryNodes || whole.height > maximumDepth) {
                return std::nullopt;
            }
        }
        return whole;
    }

    std::string_view data_;
    std::size_t offsetSize_ = 0;
    std::size_t referenceSize_ = 0;
    std::size_t table_ = 0;
    /// By object.
    std::vector<Subtree> subtrees_;
};

} // namespace

bool isWithinPropertyListLimits(std::string_view data) {
    if (data.starts_with(binaryMagic)) {
        return BinaryTree(data).isWithinLimits();
    }
    // Opening tags bound the depth, wherever they stand; comments cannot hide one.
    return countOf("<array", data) + countOf("<dict", data) <= maximumXmlContainers &&
           countOf("<", data) <= maximumXmlTags;
}

} // namespace zentrill
