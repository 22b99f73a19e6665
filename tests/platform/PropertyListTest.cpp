#include "platform/PropertyList.h"

#include "PropertyListFixture.h"
#include "support/ChildProcess.h"
#include "support/OrdinaryUser.h"
#include "support/Processes.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <string>
#include <vector>

#include <sys/stat.h>

namespace zentrill {
namespace {

using test::binaryForm;
using test::container;
using test::contentOf;
using test::infoList;
using test::xmlHead;
using test::xmlList;
using testing::StartsWith;

using PropertyListTest = test::PropertyListFixture;

TEST_F(PropertyListTest, ReadsAStringFromBothForms) {
    const std::string xml = folder.makeFile("xml.plist", infoList());
    const std::string binary = folder.makeFile("binary.plist", binaryForm(infoList()));
    ASSERT_THAT(contentOf(binary), StartsWith("bplist00"));
    for (const std::string& path : {xml, binary}) {
        EXPECT_EQ(propertyListString(path, "CFBundleIdentifier"), "com.user.Zentrill") << path;
        EXPECT_EQ(propertyListString(path, "CFBundleName"), "A & B") << path;
        EXPECT_EQ(propertyListString(path, "cfbundleidentifier"), std::nullopt) << path;
        EXPECT_EQ(propertyListString(path, "Missing"), std::nullopt) << path;
        EXPECT_EQ(propertyListString(path, "Count"), std::nullopt) << path;
        EXPECT_EQ(propertyListString(path, "List"), std::nullopt) << path;
        EXPECT_EQ(propertyListString(path, std::string("Count\0", 6)), std::nullopt) << path;
    }
}

TEST_F(PropertyListTest, ReadsThroughALink) {
    folder.makeFile("real.plist", infoList());
    EXPECT_EQ(propertyListString(folder.makeLink("link.plist", "real.plist"), "CFBundleIdentifier"),
              "com.user.Zentrill");
}

TEST_F(PropertyListTest, WhatIsNoDictionaryHoldsNothing) {
    const std::string whole = infoList();
    const std::string binary = binaryForm(whole);
    const std::vector<std::string> contents{
        "",
        "\n",
        "not a list",
        "bplist00",
        "bplist0",
        xmlHead,
        xmlList("<array><string>CFBundleIdentifier</string></array>"),
        xmlList("<string>CFBundleIdentifier</string>"),
        xmlList(""),
        whole.substr(0, whole.size() / 2),
        binary.substr(0, binary.size() - 1),
        binary.substr(0, binary.size() / 2),
        binary.substr(8),
        std::string(4096, '\0'),
    };
    for (const std::string& content : contents) {
        EXPECT_EQ(propertyListString(folder.makeFile("list.plist", content), "CFBundleIdentifier"),
                  std::nullopt)
            << content;
    }
}

TEST_F(PropertyListTest, WhatIsNoReadableFileHoldsNothing) {
    EXPECT_EQ(propertyListString(folder.path("missing"), "K"), std::nullopt);
    EXPECT_EQ(propertyListString(folder.path(), "K"), std::nullopt);
    EXPECT_EQ(propertyListString(folder.makeLink("loop", "loop"), "K"), std::nullopt);
    const std::string pipe = folder.path("pipe");
    ASSERT_EQ(::mkfifo(pipe.c_str(), 0600), 0);
    EXPECT_EQ(propertyListString(pipe, "K"), std::nullopt);
    EXPECT_EQ(propertyListString("/dev/zero", "K"), std::nullopt);

    const std::string secret = folder.makeFile("secret.plist", infoList());
    std::filesystem::permissions(folder.path(), std::filesystem::perms::all);
    std::filesystem::permissions(secret, std::filesystem::perms::none);
    EXPECT_TRUE(test::passesInChild([&] {
        test::becomeOrdinaryUser();
        EXPECT_EQ(propertyListString(secret, "CFBundleIdentifier"), std::nullopt);
    }));
}

TEST_F(PropertyListTest, AFileBeyondSixteenMebibytesIsNotRead) {
    constexpr std::size_t limit = std::size_t{16} << 20U;
    const std::string list = xmlList("<dict><key>K</key><string>v</string></dict>");
    const std::string largest = list + std::string(limit - list.size(), '\n');
    EXPECT_EQ(propertyListString(folder.makeFile("largest", largest), "K"), "v");
    const std::string tooLarge = folder.makeFile("too-large", largest + "\n");
    EXPECT_EQ(propertyListString(tooLarge, "K"), std::nullopt);
    EXPECT_FALSE(setPropertyListString(tooLarge, "K", "w"));
    EXPECT_EQ(std::filesystem::file_size(tooLarge), limit + 1);

    const std::string endless = folder.makeFile("endless");
    std::filesystem::resize_file(endless, std::uintmax_t{1} << 40U);
    EXPECT_EQ(propertyListString(endless, "K"), std::nullopt);
}

TEST_F(PropertyListTest, AnXmlTreeTooDeepForTheStackIsRefusedAndKept) {
    const auto nested = [](int depth) {
        std::string body = "<dict><key>K</key><string>v</string><key>L</key>";
        for (int level = 0; level < depth; ++level) {
            body += level % 2 == 0 ? "<array><!--</array>-->" : "<dict ><key>x</key>";
        }
        for (int level = depth; level-- > 0;) {
            body += level % 2 == 0 ? "</array>" : "</dict>";
        }
        return xmlList(body + "</dict>");
    };
    EXPECT_EQ(propertyListString(folder.makeFile("fits.plist", nested(1000)), "K"), "v");
    for (const int depth : {1100, 500'000}) {
        const std::string path = folder.makeFile("deep.plist", nested(depth));
        EXPECT_EQ(propertyListString(path, "K"), std::nullopt) << depth;
        EXPECT_FALSE(setPropertyListString(path, "K", "w")) << depth;
        EXPECT_EQ(contentOf(path), nested(depth)) << depth;
    }
}

TEST_F(PropertyListTest, AnXmlListWithTooManyEntriesIsRefused) {
    std::string wide = "<dict><key>K</key><string>v</string>";
    for (int entry = 0; entry < 150'000; ++entry) {
        wide += "<key>" + std::to_string(entry) + "</key><true/>";
    }
    EXPECT_EQ(propertyListString(folder.makeFile("wide.plist", xmlList(wide + "</dict>")), "K"),
              std::nullopt);
}

TEST_F(PropertyListTest, ABinaryTreeThatFitsIsRead) {
    const std::string pair = container("\xA2", {5, 5});
    EXPECT_EQ(keyBeside({pair, "\x51x"}), "v");
}

TEST_F(PropertyListTest, ABinaryTreeThatRefersToItselfIsRefused) {
    EXPECT_EQ(keyBeside({container("\xA1", {4})}), std::nullopt);
    EXPECT_EQ(keyBeside({container("\xA1", {5}), container("\xA1", {4})}), std::nullopt);
    EXPECT_EQ(keyBeside({container("\xA1", {0})}), std::nullopt);
}

TEST_F(PropertyListTest, ABinaryTreeThatUnfoldsBeyondAnyMemoryIsRefused) {
    std::vector<std::string> objects;
    for (std::size_t level = 0; level < 60; ++level) {
        objects.push_back(container("\xA2", {5 + level, 5 + level}));
    }
    objects.emplace_back("\x51x");
    EXPECT_EQ(keyBeside(objects), std::nullopt);
}

TEST_F(PropertyListTest, ABinaryTreeTooDeepForTheStackIsRefused) {
    // The second list hangs each stretch of a deep chain on the end of one that was measured before.
    std::vector<std::string> chain;
    for (std::size_t level = 0; level < 8000; ++level) {
        chain.push_back(container("\xA1", {5 + level}));
    }
    chain.emplace_back("\x51x");
    EXPECT_EQ(keyBeside(chain), std::nullopt);

    constexpr std::size_t stretch = 400;
    constexpr std::size_t links = 8000;
    std::vector<std::size_t> starts;
    for (std::size_t start = links; start >= stretch; start -= stretch) {
        starts.push_back(6 + start - stretch);
    }
    std::vector<std::string> stretches{container("\xAF\x10\x14", starts)};
    for (std::size_t level = 0; level < links; ++level) {
        stretches.push_back(container("\xA1", {6 + level}));
    }
    stretches.emplace_back("\x51x");
    EXPECT_EQ(keyBeside(stretches), std::nullopt);
}

TEST_F(PropertyListTest, ABinaryListThatContradictsItselfIsRefused) {
    EXPECT_EQ(keyBeside({container("\xA1", {600})}), std::nullopt);
    EXPECT_EQ(keyBeside({container("\xAE", {1})}), std::nullopt);
    EXPECT_EQ(keyBeside({"\xAF\x13\xFF\xFF\xFF\xFF\xFF\xFF\xFF\xFF"}), std::nullopt);
    EXPECT_EQ(keyBeside({"\xAF\x1F"}), std::nullopt);
    const std::string whole = binaryForm(infoList());
    for (std::size_t at = whole.size() - 32; at < whole.size(); ++at) {
        std::string broken = whole;
        broken[at] = '\xFF';
        // Some bytes of the trailer mean nothing; that the rest is survived is the point here.
        static_cast<void>(propertyListString(folder.makeFile("broken.plist", broken), "CFBundleName"));
    }
}

} // namespace
} // namespace zentrill
