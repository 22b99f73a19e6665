#include "platform/RegularFile.h"

#include "platform/FileSystem.h"
#include "support/ChildProcess.h"
#include "support/TemporaryDirectory.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <csignal>
#include <filesystem>
#include <string>

#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

namespace zentrill {
namespace {

class RegularFileTest : public testing::Test {
protected:
    [[nodiscard]] std::string makePipe() const {
        std::string pipe = folder.path("pipe");
        EXPECT_EQ(::mkfifo(pipe.c_str(), 0600), 0);
        return pipe;
    }

    test::TemporaryDirectory folder;
};

TEST_F(RegularFileTest, ReadsUpToTheLimit) {
    const std::string content(100'000, 'x');
    const std::string path = folder.makeFile("file", content);
    EXPECT_EQ(readRegularFile(path, content.size(), FinalLink::refuse).content, content);
    EXPECT_EQ(readRegularFile(path, content.size() - 1, FinalLink::refuse).content, std::nullopt);
    EXPECT_EQ(readRegularFile(folder.makeFile("empty"), 0, FinalLink::refuse).content, "");
}

TEST_F(RegularFileTest, OnlyWhatIsNotThereIsMissing) {
    EXPECT_TRUE(readRegularFile(folder.path("none"), 1, FinalLink::refuse).missing);
    for (const std::string& path : {folder.path(), makePipe(), folder.makeLink("loop", "loop"),
                                    folder.makeFile("long", "12"), folder.path("long/below")}) {
        const FileReading reading = readRegularFile(path, 1, FinalLink::refuse);
        EXPECT_EQ(reading.content, std::nullopt) << path;
        EXPECT_FALSE(reading.missing) << path;
    }
}

TEST_F(RegularFileTest, FollowsAFinalLinkOnlyWhenAsked) {
    folder.makeFile("file", "x");
    const std::string link = folder.makeLink("link", "file");
    EXPECT_EQ(readRegularFile(link, 1, FinalLink::follow).content, "x");
    const FileReading refused = readRegularFile(link, 1, FinalLink::refuse);
    EXPECT_EQ(refused.content, std::nullopt);
    EXPECT_FALSE(refused.missing);
}

TEST_F(RegularFileTest, ReplacesNothingButRegularFiles) {
    const std::string file = folder.makeFile("file", "old");
    const std::string link = folder.makeLink("link", file);
    const std::string pipe = makePipe();
    for (const std::string& path : {link, pipe, folder.makeDirectory("folder")}) {
        EXPECT_FALSE(replaceRegularFile(path, "new")) << path;
    }
    EXPECT_TRUE(std::filesystem::is_symlink(link));
    EXPECT_TRUE(std::filesystem::is_fifo(pipe));
    EXPECT_EQ(readRegularFile(file, 3, FinalLink::refuse).content, "old");
    EXPECT_TRUE(replaceRegularFile(file, "new"));
    EXPECT_EQ(readRegularFile(file, 3, FinalLink::refuse).content, "new");
}

TEST_F(RegularFileTest, ATemporaryFileOfAnInterruptedRunIsNoObstacle) {
    const std::string left = folder.makeFile(".zentrill-" + std::to_string(::getpid()) + "-0.tmp", "left");
    EXPECT_TRUE(replaceRegularFile(folder.path("file"), "new"));
    EXPECT_EQ(readRegularFile(left, 4, FinalLink::refuse).content, "left");
}

TEST_F(RegularFileTest, AReplacementThatCannotBeWrittenLeavesTheOldFileAndNoOther) {
    const std::string file = folder.makeFile("file", "old");
    EXPECT_TRUE(test::passesInChild([&] {
        // Without the signal, writing beyond the limit is an error like that of a full disk.
        ::signal(SIGXFSZ, SIG_IGN); // NOLINT(performance-no-int-to-ptr): the system's own constant
        const rlimit none{.rlim_cur = 0, .rlim_max = 0};
        ASSERT_EQ(::setrlimit(RLIMIT_FSIZE, &none), 0);
        EXPECT_FALSE(replaceRegularFile(file, "new"));
    }));
    EXPECT_EQ(readRegularFile(file, 3, FinalLink::refuse).content, "old");
    EXPECT_THAT(FileSystem::shared().entryNames(folder.path()),
                testing::Optional(testing::ElementsAre("file")));
}

} // namespace
} // namespace zentrill
