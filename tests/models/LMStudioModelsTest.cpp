#include "LocalModelScannerFixture.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace zentrill {
namespace {

using test::joined;
using test::listed;
using test::names;
using testing::ElementsAre;
using testing::UnorderedElementsAre;

using LocalModelScannerTest = test::LocalModelScannerFixture;

TEST_F(LocalModelScannerTest, ListsGGUFFilesOfBothLMStudioFolders) {
    home.makeFile(".lmstudio/models/lmstudio-community/Foo/foo-Q4.gguf", "12345");
    home.makeFile(".lmstudio/models/lmstudio-community/Foo/foo-Q4.GGUF", "12345");
    home.makeFile(".lmstudio/models/lmstudio-community/Foo/readme.gguf.txt", "12345");
    home.makeLink(".lmstudio/models/lmstudio-community/Foo/link.gguf", "foo-Q4.gguf");
    home.makeFile(".cache/lm-studio/models/top.gguf", "1");
    home.makeFile(".cache/lm-studio/models/.gguf");
    EXPECT_THAT(scanner().scanLMStudioModels(),
                UnorderedElementsAre(
                    LocalModel{.name = "top.gguf",
                               .source = "LM Studio (GGUF)",
                               .sizeBytes = 1,
                               .path = home.path(".cache/lm-studio/models/top.gguf")},
                    LocalModel{.name = ".gguf",
                               .source = "LM Studio (GGUF)",
                               .sizeBytes = 0,
                               .path = home.path(".cache/lm-studio/models/.gguf")},
                    LocalModel{.name = "lmstudio-community/Foo/foo-Q4.gguf",
                               .source = "LM Studio (GGUF)",
                               .sizeBytes = 5,
                               .path = home.path(".lmstudio/models/lmstudio-community/Foo/foo-Q4.gguf")}));
    EXPECT_EQ(scanner().scanLMStudioModels().back().name, "lmstudio-community/Foo/foo-Q4.gguf");
    EXPECT_THAT(log, ElementsAre("Scanning LM Studio models...", "Scanning LM Studio models...",
                                 "Scanning LM Studio models...", "Scanning LM Studio models..."));
}

TEST_F(LocalModelScannerTest, OnlyTheLMStudioFolderThatExistsIsLogged) {
    home.makeFile(".lmstudio/models/a.gguf", "12345");
    EXPECT_THAT(names(scanner().scanLMStudioModels()), ElementsAre("a.gguf"));
    EXPECT_THAT(log, ElementsAre("Scanning LM Studio models..."));
}

TEST_F(LocalModelScannerTest, GGUFFoldersAndLinkedFoldersAreNoModels) {
    home.makeFile(".lmstudio/models/folder.gguf/inside.gguf", "12345");
    home.makeFile("elsewhere/outside.gguf", "12345");
    home.makeLink(".lmstudio/models/linked", home.path("elsewhere"));
    home.makeLink(".lmstudio/models/linked.gguf", home.path("elsewhere/outside.gguf"));
    home.makeLink(".lmstudio/models/up", "..");
    ASSERT_EQ(::mkfifo(home.path(".lmstudio/models/fifo.gguf").c_str(), 0600), 0);
    const std::vector<LocalModel> models = scanner().scanLMStudioModels();
    EXPECT_THAT(names(models), UnorderedElementsAre("folder.gguf/inside.gguf", "fifo.gguf"));
}

TEST_F(LocalModelScannerTest, AFoldersModelsStandInItsPlace) {
    for (const char* name : {"a", "b", "c", "d"}) {
        home.makeFile(std::string("root/") + name + ".gguf");
        for (const char* inner : {"x", "y", "z"}) {
            home.makeFile(std::string("root/") + name + "/" + inner + "/deep.gguf");
        }
        home.makeFile(std::string("root/") + name + "/own.gguf");
    }
    std::vector<std::string> expected;
    const auto expect = [&](const auto& self, const std::string& folder, const std::string& prefix) -> void {
        for (const std::string& entry : listed(folder)) {
            if (std::filesystem::is_directory(joined({folder, "/", entry}))) {
                self(self, joined({folder, "/", entry}), joined({prefix, entry, "/"}));
            } else {
                expected.push_back(prefix + entry);
            }
        }
    };
    expect(expect, home.path("root"), "");
    EXPECT_EQ(names(scanner().scanGGUFRecursively(home.path("root"), home.path("root"))), expected);
}

TEST_F(LocalModelScannerTest, EveryOccurrenceOfTheRootLeavesTheName) {
    const std::string root = home.path("root");
    home.makeFile("root/a" + root + "/b.gguf");
    EXPECT_THAT(names(scanner().scanGGUFRecursively(root, root)), ElementsAre("ab.gguf"));
    EXPECT_THAT(names(scanner().scanGGUFRecursively(home.path("root/a"), home.path("other"))),
                ElementsAre(root + "/a" + root + "/b.gguf"));
}

TEST_F(LocalModelScannerTest, NamesThatAreNotUTF8Survive) {
    home.makeFile(".lmstudio/models/odd\xff\n/m\xfe.gguf", "12345");
    const std::vector<LocalModel> models = scanner().scanLMStudioModels();
    ASSERT_THAT(names(models), ElementsAre("odd\xff\n/m\xfe.gguf"));
    EXPECT_TRUE(std::filesystem::exists(models.front().path));
}

TEST_F(LocalModelScannerTest, ATreeDeeperThanAnyPathIsSearchedWhole) {
    constexpr int depth = 100;
    const std::string nested(60, 'n');
    int current = ::open(home.makeDirectory("root").c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    for (int level = 0; level < depth; ++level) {
        ASSERT_GE(current, 0);
        ASSERT_EQ(::mkdirat(current, nested.c_str(), 0700), 0);
        const int child = ::openat(current, nested.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
        ::close(current);
        current = child;
    }
    const int file = ::openat(current, "deepest.gguf", O_WRONLY | O_CREAT | O_CLOEXEC, 0600);
    ASSERT_EQ(::write(file, "12345", 5), 5);
    ::close(file);
    ::close(current);

    const std::vector<LocalModel> models =
        scanner().scanGGUFRecursively(home.path("root"), home.path("root"));
    ASSERT_EQ(models.size(), 1U);
    EXPECT_EQ(models.front().sizeBytes, 5);
    EXPECT_EQ(models.front().name.size(),
              (depth * (nested.size() + 1)) + std::string_view("deepest.gguf").size());
    EXPECT_EQ(models.front().path, home.path("root/") + models.front().name);
}

} // namespace
} // namespace zentrill
