#pragma once

#include <map>
#include <optional>
#include <string>
#include <string_view>

namespace zentrill {

/// One line of the tool's JSON output, as far as it matters: the texts directly in the line's object.
class DockerJsonLine {
public:
    /// Nothing unless the line is one complete JSON object. The line may be of any depth and length, because
    /// only the texts are kept. If a key occurs twice, the last value counts.
    [[nodiscard]] static std::optional<DockerJsonLine> parse(std::string_view line);

    /// The value of `key` if it is a text and not empty.
    [[nodiscard]] std::optional<std::string> nonemptyString(std::string_view key) const;

private:
    using Texts = std::map<std::string, std::string, std::less<>>;

    explicit DockerJsonLine(Texts texts) noexcept;

    Texts texts_;
};

} // namespace zentrill
