#pragma once

#include "truth/Random.h"

#include <string>
#include <utility>
#include <vector>

#include <sys/types.h>

namespace zentrill::test {

/// Makes a random tree: files, links to everywhere, hard links to files outside, pipes, empty folders, odd
/// names, names of credentials in random places and letter cases.
class RandomTree {
public:
    /// In the existing folder `top`; links may lead to the existing folder `outside`, whose files `file0` to
    /// `file3` get further names in the tree.
    RandomTree(Random& random, std::string top, std::string outside);

    /// Every item made, `top` first, a folder before its contents.
    [[nodiscard]] const std::vector<std::string>& items() const noexcept { return items_; }

    /// Takes permissions away from some folders; each with the mode it has now.
    [[nodiscard]] std::vector<std::pair<std::string, mode_t>> sealSomeFolders();

private:
    void fill(const std::string& folder, int depth);
    [[nodiscard]] std::string randomName();
    void makeLeaf(const std::string& path);

    Random& random_;
    std::string top_;
    std::string outside_;
    std::vector<std::string> items_;
    std::vector<std::string> folders_;
};

} // namespace zentrill::test
