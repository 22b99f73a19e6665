#include "deletion/DeletionProgress.h"

#include "DeletionCases.h"
#include "DeletionForm.h"
#include "support/TemporaryDirectory.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <memory>
#include <string>
#include <vector>

namespace zentrill {
namespace {

using test::keepingAll;
using test::newEngine;
using test::shielded;
using test::TemporaryDirectory;
using test::unshielded;
using testing::IsEmpty;
using testing::StartsWith;

class DeletionProgressTest : public testing::Test {
protected:
    /// 20 folders with 30 files each, and a credential in the first one: 622 items with the tree itself.
    void makeTree() const {
        for (int folder = 0; folder < 20; ++folder) {
            for (int file = 0; file < 30; ++file) {
                folder_.makeFile("tree/" + std::to_string(folder) + "/" + std::to_string(file));
            }
        }
        folder_.makeFile("tree/0/auth.json");
    }

    [[nodiscard]] DeletionReport deleteTree(const DeletionOptions& options) const {
        return newEngine().tellingTo(progress_).deleteItem(folder_.path("tree"), options);
    }

    TemporaryDirectory folder_;
    std::shared_ptr<DeletionProgress> progress_ = std::make_shared<DeletionProgress>();
};

TEST_F(DeletionProgressTest, CountsWhatGoes) {
    makeTree();
    ASSERT_TRUE(deleteTree(unshielded).succeeded());
    EXPECT_EQ(progress_->removedCount(), 622U);
}

TEST_F(DeletionProgressTest, CountsWhatTheReportLists) {
    makeTree();
    const DeletionReport report = deleteTree(shielded);
    EXPECT_EQ(report.removed.size(), 619U); // All but the credential and the two folders around it.
    EXPECT_EQ(progress_->removedCount(), report.removed.size());
}

TEST_F(DeletionProgressTest, CountsNothingThatStays) {
    makeTree();
    const DeletionReport report = deleteTree(keepingAll);
    EXPECT_EQ(report.preserved.size(), 601U);
    EXPECT_EQ(progress_->removedCount(), 0U);
}

TEST_F(DeletionProgressTest, AddsUpOverItems) {
    makeTree();
    folder_.makeFile("other");
    const SafeDeletionEngine engine = newEngine().tellingTo(progress_);
    ASSERT_TRUE(engine.deleteItem(folder_.path("other"), unshielded).succeeded());
    EXPECT_EQ(progress_->removedCount(), 1U);
    ASSERT_TRUE(engine.deleteItem(folder_.path("tree"), unshielded).succeeded());
    EXPECT_EQ(progress_->removedCount(), 623U);
}

/// Asks whenever the deletion asks whether an item may go.
TEST_F(DeletionProgressTest, TellsWhileTheDeletionGoesOn) {
    makeTree();
    std::vector<std::uint64_t> counts;
    std::vector<std::string> paths;
    const SafeDeletionEngine engine = newEngine([&](const std::string&) {
        counts.push_back(progress_->removedCount());
        paths.push_back(progress_->path());
        return true;
    });
    ASSERT_TRUE(engine.tellingTo(progress_).deleteItem(folder_.path("tree"), unshielded).succeeded());
    ASSERT_EQ(counts.size(), 622U);
    EXPECT_TRUE(std::ranges::is_sorted(counts));
    EXPECT_EQ(counts.front(), 0U);
    EXPECT_GE(counts.back(), 600U);
    EXPECT_EQ(paths.front(), folder_.path("tree"));
    EXPECT_THAT(paths, testing::Each(StartsWith(folder_.path("tree"))));
    std::ranges::sort(paths);
    const auto repeated = std::ranges::unique(paths);
    EXPECT_TRUE(repeated.empty()) << repeated.front(); // Each is the one at hand, and none comes twice.
    EXPECT_THAT(progress_->path(), IsEmpty());         // Nothing is at hand any more.
}

TEST_F(DeletionProgressTest, MakesAPathOnlyWhenItIsWanted) {
    EXPECT_TRUE(progress_->wantsPath());
    progress_->setPath("/one");
    EXPECT_FALSE(progress_->wantsPath());
    EXPECT_EQ(progress_->path(), "/one");
    EXPECT_TRUE(progress_->wantsPath());
    EXPECT_EQ(progress_->path(), "/one");
}

} // namespace
} // namespace zentrill
