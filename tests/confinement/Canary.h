#pragma once

#include "support/TemporaryDirectory.h"

#include <functional>
#include <string>
#include <vector>

namespace zentrill::test {

/// A folder that a confined process is to leave as it is, and every way to change it.
class Canary {
public:
    Canary();

    /// What somebody could do to the folder `outside`, with the help of a folder `inside` that holds a file.
    struct Attempt {
        std::string name;
        /// Whether it worked.
        std::function<bool(const std::string& outside, const std::string& inside)> works;
    };

    [[nodiscard]] static const std::vector<Attempt>& attempts();

    /// The names of the attempts that work, with a file in `inside` made for each.
    [[nodiscard]] std::vector<std::string> workingAttempts(const std::string& inside) const;

    /// Whether the attempt of this name is one that an old Landlock cannot refuse.
    [[nodiscard]] static bool onlyEmptiesFiles(const std::string& name);

    [[nodiscard]] std::string path() const { return folder_.path("outside"); }

    /// Everything in it with its content.
    [[nodiscard]] std::vector<std::string> state() const;

private:
    TemporaryDirectory folder_;
};

} // namespace zentrill::test
