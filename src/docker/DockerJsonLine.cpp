#include "docker/DockerJsonLine.h"

#include "platform/Text.h"

#include <nlohmann/json.hpp>

#include <cstddef>
#include <utility>

namespace zentrill {

namespace {

/// Told about every token in turn, so that a line of sixty-four million brackets builds no tree.
class TopLevelTexts final : public nlohmann::json_sax<nlohmann::json> {
public:
    std::map<std::string, std::string, std::less<>> texts;

    bool null() override { return otherValue(); }

    bool boolean(bool /*value*/) override { return otherValue(); }

    bool number_integer(number_integer_t /*value*/) override { return otherValue(); }

    bool number_unsigned(number_unsigned_t /*value*/) override { return otherValue(); }

    bool number_float(number_float_t /*value*/, const string_t& /*text*/) override { return otherValue(); }

    bool binary(binary_t& /*value*/) override { return otherValue(); }

    bool string(string_t& value) override {
        if (depth_ == 1) {
            texts[key_] = std::move(value);
        }
        return depth_ > 0;
    }

    bool start_object(std::size_t /*elements*/) override {
        const bool isWanted = depth_ == 0 || otherValue();
        ++depth_;
        return isWanted;
    }

    bool start_array(std::size_t /*elements*/) override {
        const bool isWanted = otherValue();
        ++depth_;
        return isWanted;
    }

    bool key(string_t& name) override {
        if (depth_ == 1) {
            key_ = std::move(name);
        }
        return true;
    }

    bool end_object() override { return leave(); }

    bool end_array() override { return leave(); }

    bool parse_error(std::size_t /*position*/, const std::string& /*token*/,
                     const nlohmann::json::exception& /*error*/) override {
        return false;
    }

private:
    std::size_t depth_ = 0;
    std::string key_;

    /// False, which ends the parsing, if the line is not an object.
    bool otherValue() {
        if (depth_ == 1) {
            texts.erase(key_);
        }
        return depth_ > 0;
    }

    bool leave() {
        --depth_;
        return true;
    }
};

} // namespace

DockerJsonLine::DockerJsonLine(Texts texts) noexcept : texts_(std::move(texts)) {}

std::optional<DockerJsonLine> DockerJsonLine::parse(std::string_view line) {
    // JSON does not allow one, but the parser would take it for the end and ignore what follows.
    if (hasNul(line)) {
        return std::nullopt;
    }
    TopLevelTexts reader;
    if (!nlohmann::json::sax_parse(line.begin(), line.end(), &reader)) {
        return std::nullopt;
    }
    return DockerJsonLine(std::move(reader.texts));
}

std::optional<std::string> DockerJsonLine::nonemptyString(std::string_view key) const {
    const auto found = texts_.find(key);
    if (found == texts_.end() || found->second.empty()) {
        return std::nullopt;
    }
    return found->second;
}

} // namespace zentrill
