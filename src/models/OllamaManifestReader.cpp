#include "models/OllamaManifestReader.h"

#include "models/DecimalInteger.h"
#include "platform/Text.h"

#include <nlohmann/json.hpp>

#include <cstddef>
#include <string>
#include <utility>

namespace zentrill {

namespace {

/// How deep the JSON reader of a Mac goes.
constexpr std::size_t deepestNesting = 512;

enum class Shape : std::uint8_t { object, array, scalar };

/// Keeps what matters of the parser's events. Values are told apart by their depth: 1 is a member of the
/// manifest, 2 a member of the config or an element of the layers, 3 a member of a layer.
class ManifestEvents final : public nlohmann::json_sax<nlohmann::json> {
public:
    [[nodiscard]] std::optional<OllamaManifest> manifest() && {
        if (!configIsObject_ || !layersAreObjects_) {
            return std::nullopt;
        }
        return std::move(manifest_);
    }

    bool null() override { return value(Shape::scalar); }

    bool boolean(bool /*unused*/) override { return value(Shape::scalar); }

    bool number_integer(number_integer_t number) override { return value(Shape::scalar, number); }

    bool number_unsigned(number_unsigned_t number) override {
        if (!std::in_range<std::int64_t>(number)) {
            return value(Shape::scalar);
        }
        return value(Shape::scalar, static_cast<std::int64_t>(number));
    }

    /// As text, because a double cannot hold every 64-bit integer.
    bool number_float(number_float_t /*unused*/, const string_t& text) override {
        return value(Shape::scalar, integerFromNumber(text));
    }

    bool string(string_t& text) override { return value(Shape::scalar, integerFromDigits(text), text); }

    bool binary(binary_t& /*unused*/) override { return value(Shape::scalar); }

    bool start_object(std::size_t /*unused*/) override { return value(Shape::object) && descend(); }

    bool end_object() override { return ascend(); }

    bool start_array(std::size_t /*unused*/) override { return value(Shape::array) && descend(); }

    bool end_array() override { return ascend(); }

    bool key(string_t& name) override {
        if (depth_ == 1) {
            section_ = sectionNamed(name);
        }
        member_ = memberNamed(name);
        return true;
    }

    bool parse_error(std::size_t /*unused*/, const std::string& /*unused*/,
                     const nlohmann::detail::exception& /*unused*/) override {
        return false;
    }

private:
    enum class Section : std::uint8_t { other, config, layers };

    enum class Member : std::uint8_t { other, size, digest };

    static Section sectionNamed(std::string_view name) {
        if (name == "config") {
            return Section::config;
        }
        return name == "layers" ? Section::layers : Section::other;
    }

    static Member memberNamed(std::string_view name) {
        if (name == "size") {
            return Member::size;
        }
        return name == "digest" ? Member::digest : Member::other;
    }

    bool value(Shape shape, std::optional<std::int64_t> integer = std::nullopt, std::string_view text = {}) {
        switch (depth_) {
        case 0:
            return shape == Shape::object;
        case 1:
            beginSection(shape);
            break;
        case 2:
            if (section_ == Section::config) {
                set(manifest_.config, integer, text);
            } else if (section_ == Section::layers) {
                beginLayer(shape);
            }
            break;
        case 3:
            if (section_ == Section::layers && layersAreObjects_) {
                set(manifest_.layers.back(), integer, text);
            }
            break;
        default:
            break;
        }
        return true;
    }

    void beginSection(Shape shape) {
        if (section_ == Section::config) {
            configIsObject_ = shape == Shape::object;
            manifest_.config = {};
        } else if (section_ == Section::layers) {
            layersAreObjects_ = shape == Shape::array;
            manifest_.layers.clear();
        }
    }

    void beginLayer(Shape shape) {
        layersAreObjects_ = layersAreObjects_ && shape == Shape::object;
        if (layersAreObjects_) {
            manifest_.layers.emplace_back();
        }
    }

    void set(OllamaBlob& blob, std::optional<std::int64_t> integer, std::string_view text) const {
        if (member_ == Member::size) {
            blob.size = integer;
        } else if (member_ == Member::digest) {
            blob.digest = text;
        }
    }

    bool descend() { return ++depth_ <= deepestNesting; }

    bool ascend() {
        --depth_;
        return true;
    }

    std::size_t depth_ = 0;
    Section section_ = Section::other;
    Member member_ = Member::other;
    bool configIsObject_ = false;
    /// False also while no layers have been read.
    bool layersAreObjects_ = false;
    OllamaManifest manifest_;
};

} // namespace

std::optional<OllamaManifest> readOllamaManifest(std::string_view manifest) {
    // The parser takes a NUL for the end of the text, whatever follows; JSON does not allow one.
    if (hasNul(manifest)) {
        return std::nullopt;
    }
    ManifestEvents events;
    if (!nlohmann::json::sax_parse(manifest.begin(), manifest.end(), &events)) {
        return std::nullopt;
    }
    return std::move(events).manifest();
}

} // namespace zentrill
