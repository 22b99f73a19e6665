// A deletion with a fault in it loses what lies outside of its item, unless the kernel holds it to that.

#include "deletion/SafeDeletionEngine.h"
#include "support/TemporaryDirectory.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <string>
#include <utility>

namespace zentrill {
namespace {

namespace fs = std::filesystem;
using test::TemporaryDirectory;

constexpr int canaryCount = 40;

class Mutant : public testing::Test {
protected:
    [[nodiscard]] SafeDeletionEngine engine(DeletionDomain domain,
                                            SafeDeletionEngine::DeletionPredicate asked = {}) const {
        return SafeDeletionEngine(FileSystem::shared(), {}, std::move(asked), {}, std::move(domain));
    }

    void makeFiles(const std::string& relative) const {
        for (int number = 0; number < canaryCount; ++number) {
            folder.makeFile(relative + "/f" + std::to_string(number));
        }
    }

    [[nodiscard]] int canariesLeft(const std::string& relative) const {
        int left = 0;
        for (int number = 0; number < canaryCount; ++number) {
            left += fs::exists(folder.path(relative + "/f" + std::to_string(number))) ? 1 : 0;
        }
        return left;
    }

    // NOLINTBEGIN(readability-identifier-naming): named in the build file.
    int follows_links(const DeletionDomain& domain) {
        makeFiles("outside");
        folder.makeLink("tree/link", "../outside");
        (void)engine(domain).deleteItem(folder.path("tree"), {});
        return canariesLeft("outside");
    }

    int uses_wrong_handle(const DeletionDomain& domain) {
        makeFiles("");
        makeFiles("tree");
        (void)engine(domain).deleteItem(folder.path("tree"), {});
        return canariesLeft("");
    }

    int trusts_dot_dot(const DeletionDomain& domain) {
        std::string path = "tree";
        std::string middle;
        for (int level = 0; level < 60; ++level) {
            path += "/d";
            if (level == 20) {
                middle = path;
                makeFiles(path);
            }
        }
        const std::string bottom = folder.makeFile(path + "/bottom");
        makeFiles("outside");
        (void)engine(domain, [&](const std::string& asked) {
            if (asked == bottom) {
                fs::rename(folder.path(middle + "/d"), folder.path("outside/d"));
            }
            return true;
        }).deleteItem(folder.path("tree"), {});
        return canariesLeft("outside");
    }

    // NOLINTEND(readability-identifier-naming)

    TemporaryDirectory folder;
};

TEST_F(Mutant, LosesWhatLiesOutside) {
    EXPECT_LT(ZENTRILL_MUTANT({}), canaryCount) << "the fault is too weak to prove anything";
}

TEST_F(Mutant, LosesNothingWhereTheKernelHoldsIt) {
    const DeletionDomain domain = DeletionDomain::ofThisMachine();
    if (!domain.enter) {
        GTEST_SKIP() << "nothing holds deletions here";
    }
    EXPECT_EQ(ZENTRILL_MUTANT(domain), canaryCount);
}

} // namespace
} // namespace zentrill
