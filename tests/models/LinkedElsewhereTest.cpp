#include "models/LinkedElsewhere.h"

#include "support/TemporaryDirectory.h"

#include <gtest/gtest.h>

#include <string>

namespace zentrill {
namespace {

class LinkedElsewhereTest : public testing::Test {
protected:
    [[nodiscard]] std::int64_t bytes() const { return bytesLinkedElsewhere(folder.path("model")); }

    test::TemporaryDirectory folder;
    std::string model = folder.makeDirectory("model");
};

TEST_F(LinkedElsewhereTest, CountsEachFileOnce) {
    folder.makeFile("outside/first", "12345");
    folder.makeFile("outside/second", "12");
    folder.makeLink("model/blobs/first", folder.path("outside/first"));
    folder.makeLink("model/deep/er/relative", "../../../outside/second");
    folder.makeLink("model/deep/again", "../blobs/first");
    folder.makeLink("model/once-more", folder.path("model/deep/er/../er/relative"));
    EXPECT_EQ(bytes(), 7);
}

TEST_F(LinkedElsewhereTest, LeavesOutWhatLiesInsideOrNowhere) {
    folder.makeFile("model/blobs/file", "12345");
    folder.makeFile("model-2/file", "1");
    folder.makeLink("model/inside", "blobs/file");
    folder.makeLink("model/itself", ".");
    folder.makeLink("model/dangling", "nowhere");
    folder.makeLink("model/loop", "loop");
    EXPECT_EQ(bytes(), 0);
    folder.makeLink("model/neighbour", "../model-2/file");
    EXPECT_EQ(bytes(), 1);
}

TEST_F(LinkedElsewhereTest, CountsAFolderElsewhereWithAllThatItHolds) {
    folder.makeFile("outside/deep/file", "12345");
    folder.makeFile("outside-2/file", "12");
    folder.makeLink("model/blobs", folder.path("outside"));
    const std::int64_t alone = bytes();
    EXPECT_GE(alone, 5);
    folder.makeLink("model/link", "blobs/deep/file");
    EXPECT_EQ(bytes(), alone) << "counted with its folder";
    folder.makeLink("model/other", folder.path("outside-2/file"));
    EXPECT_EQ(bytes(), alone + 2);
}

TEST_F(LinkedElsewhereTest, IsNothingForAFileALinkOrNothing) {
    folder.makeFile("outside", "12345");
    EXPECT_EQ(bytesLinkedElsewhere(folder.path("outside")), 0);
    EXPECT_EQ(bytesLinkedElsewhere(folder.path("missing")), 0);
    folder.makeLink("model/link", folder.path("outside"));
    EXPECT_EQ(bytesLinkedElsewhere(folder.makeLink("model-link", model)), 0);
    EXPECT_EQ(bytes(), 5);
}

TEST_F(LinkedElsewhereTest, EndsWhenToldTo) {
    folder.makeFile("outside", "12345");
    folder.makeLink("model/link", folder.path("outside"));
    EXPECT_EQ(bytesLinkedElsewhere(model, [] { return true; }), 0);
}

} // namespace
} // namespace zentrill
