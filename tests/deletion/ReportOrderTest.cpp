#include "DeletionCases.h"
#include "DeletionForm.h"
#include "deletion/DeletionWalk.h"
#include "deletion/ParentFolder.h"
#include "deletion/SafeDeletionEngine.h"
#include "support/ChildProcess.h"
#include "support/MemoryFolder.h"
#include "support/OrdinaryUser.h"
#include "support/TemporaryDirectory.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <string>
#include <utility>

namespace zentrill {
namespace {

using test::exists;
using test::keepingAll;
using test::newEngine;
using test::TemporaryDirectory;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Not;
using testing::StartsWith;
namespace fs = std::filesystem;

/// A tree with much for several threads to do, made and deleted again and again at the same place, by a user
/// whom permissions bind. What a report says of it is compared with what it says when one thread works alone.
class ReportOrder : public testing::Test {
protected:
    void SetUp() override { fs::permissions(folder_.path(), fs::perms::all); }

    void makeTree() const {
        for (int i = 0; i < 12; ++i) {
            const std::string top = "tree/" + std::to_string(i);
            folder_.makeFile(top + "/first");
            folder_.makeFile(top + "/auth.json");
            for (int j = 0; j < 6; ++j) {
                const std::string below = top + "/" + std::to_string(j);
                folder_.makeFile(below + "/file");
                folder_.makeFile(below + "/deeper/still/file");
                folder_.makeDirectory(below + "/empty");
                if (j % 2 == 0) {
                    folder_.makeFile(below + "/deeper/id.key");
                    folder_.makeLink(below + "/link", "file");
                }
            }
            folder_.makeFile(top + "/sealed/file");
            folder_.makeFile(top + "/3/locked/one");
            folder_.makeFile(top + "/3/locked/two");
            folder_.makeFile(top + "/last");
            fs::permissions(folder_.path(top + "/sealed"), fs::perms::none);
            fs::permissions(folder_.path(top + "/3/locked"), fs::perms::owner_read | fs::perms::owner_exec);
        }
    }

    void clearTree() const {
        if (!exists(folder_.path("tree"))) {
            return;
        }
        fs::permissions(folder_.path("tree"), fs::perms::owner_all);
        for (const fs::directory_entry& entry : fs::recursive_directory_iterator(folder_.path("tree"))) {
            if (entry.is_directory() && !entry.is_symlink()) {
                fs::permissions(entry.path(), fs::perms::owner_all);
            }
        }
        fs::remove_all(folder_.path("tree"));
    }

    [[nodiscard]] DeletionReport reportOf(const DeletionOptions& options, std::size_t threads) const {
        makeTree();
        const SafeDeletionEngine engine =
            newEngine(DeletionConcurrency{.threads = threads, .afterEntries = 0});
        DeletionReport report = engine.deleteItem(folder_.path("tree"), options);
        clearTree();
        return report;
    }

    [[nodiscard]] DeletionRecord recordOf(const CredentialShield& shield, std::size_t threads) const {
        makeTree();
        const std::string tree = folder_.path("tree");
        const DeletionRules rules{.shield = &shield, .concurrency = {.threads = threads, .afterEntries = 0}};
        DeletionWalk walk(rules, tree, tree, std::move(ParentFolder::open(tree).handle));
        DeletionRecord record = walk.run().record;
        clearTree();
        return record;
    }

    /// In a child of an ordinary user; `expectUsual` looks at what one thread alone reports.
    template <typename Expectation>
    void expectOneOrder(const DeletionOptions& options, const Expectation& expectUsual) const {
        EXPECT_TRUE(test::passesInChild([&] {
            test::becomeOrdinaryUser();
            const DeletionReport usual = reportOf(options, 1);
            expectUsual(usual);
            for (int repetition = 0; repetition < 20; ++repetition) {
                for (const std::size_t threads : {1U, 2U, 3U, 4U}) {
                    const DeletionReport report = reportOf(options, threads);
                    ASSERT_EQ(report.removed, usual.removed) << threads << " threads";
                    ASSERT_EQ(report.preserved, usual.preserved) << threads << " threads";
                    ASSERT_EQ(report.failures, usual.failures) << threads << " threads";
                }
            }
        }));
    }

    TemporaryDirectory folder_{test::memoryFolder()};
};

TEST_F(ReportOrder, WithTheShieldItIsTheSameForAnyNumberOfThreads) {
    expectOneOrder(test::shielded, [](const DeletionReport& usual) {
        EXPECT_GT(usual.removed.size(), 200U);
        EXPECT_EQ(usual.preserved.size(), 12U + (12U * 3U));
        EXPECT_EQ(usual.failures.size(), 12U + (12U * 2U));
    });
}

TEST_F(ReportOrder, KeepingUncertainDataItIsTheSameForAnyNumberOfThreads) {
    expectOneOrder(keepingAll, [](const DeletionReport& usual) {
        EXPECT_EQ(usual.removed.size(), 12U * 6U);
        EXPECT_GT(usual.preserved.size(), 200U);
        EXPECT_EQ(usual.failures.size(), 12U);
    });
}

TEST_F(ReportOrder, WithoutTheShieldTheFirstFailureIsTheSameForAnyNumberOfThreads) {
    expectOneOrder(test::unshielded, [this](const DeletionReport& usual) {
        EXPECT_THAT(usual.removed, IsEmpty());
        EXPECT_THAT(usual.failures, ElementsAre(StartsWith(folder_.path("tree") + ": ")));
    });
}

/// Without it the tests above could pass because one thread did everything.
TEST_F(ReportOrder, OtherThreadsReallyTakePart) {
    EXPECT_TRUE(test::passesInChild([this] {
        test::becomeOrdinaryUser();
        const CredentialMatcher matcher;
        const CredentialShield shield(matcher, {});
        const DeletionRecord alone = recordOf(shield, 1);
        EXPECT_EQ(alone.foldersOfOthers, 0U);
        for (const std::size_t threads : {2U, 3U, 4U}) {
            std::size_t foldersOfOthers = 0;
            while (foldersOfOthers < 100) {
                const DeletionRecord record = recordOf(shield, threads);
                foldersOfOthers += record.foldersOfOthers;
                ASSERT_EQ(record.report, alone.report) << threads << " threads";
                ASSERT_EQ(record.removedCount, alone.removedCount);
                ASSERT_EQ(record.firstFailure->path, alone.firstFailure->path);
            }
        }
    }));
}

} // namespace
} // namespace zentrill
