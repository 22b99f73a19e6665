#include "platform/PropertyList.h"

#include "support/ChildProcess.h"
#include "support/OrdinaryUser.h"
#include "support/PrivateMounts.h"
#include "support/Processes.h"
#include "support/TemporaryDirectory.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <plist/plist.h>

#include <cstdint>
#include <filesystem>
#include <iterator>
#include <string>
#include <vector>

#include <sys/stat.h>

namespace zentrill {
namespace {

using test::contentOf;
using testing::HasSubstr;
using testing::StartsWith;

constexpr const char* xmlHead = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
                                "<!DOCTYPE plist PUBLIC \"-//Apple//DTD PLIST 1.0//EN\" "
                                "\"http://www.apple.com/DTDs/PropertyList-1.0.dtd\">\n"
                                "<plist version=\"1.0\">\n";

std::string xmlList(const std::string& body) {
    return std::string(xmlHead).append(body).append("\n</plist>\n");
}

std::string infoList() {
    return xmlList("<dict><key>CFBundleName</key><string>A &amp; B</string>"
                   "<key>CFBundleIdentifier</key><string>com.user.Zentrill</string>"
                   "<key>Count</key><integer>7</integer><key>When</key><date>2024-05-06T07:08:09Z</date>"
                   "<key>Bytes</key><data>AAEC</data><key>On</key><true/>"
                   "<key>List</key><array><string>x</string><dict/></array></dict>");
}

std::string binaryForm(const std::string& xml) {
    plist_t root = nullptr;
    plist_from_xml(xml.data(), static_cast<std::uint32_t>(xml.size()), &root);
    char* data = nullptr;
    std::uint32_t length = 0;
    plist_to_bin(root, &data, &length);
    plist_free(root);
    std::string binary(data, length);
    plist_to_bin_free(data);
    return binary;
}

/// A binary list of the objects as they stand, the first one on top; references and offsets take two bytes.
std::string binaryList(const std::vector<std::string>& objects) {
    const auto bigEndian = [](std::size_t value, int size) {
        std::string text;
        for (int shift = 8 * (size - 1); shift >= 0; shift -= 8) {
            text += static_cast<char>(value >> shift & 0xFFU);
        }
        return text;
    };
    std::string data = "bplist00";
    std::string offsets;
    for (const std::string& object : objects) {
        offsets += bigEndian(data.size(), 2);
        data += object;
    }
    const std::size_t table = data.size();
    return data + offsets + std::string(6, '\0') + "\x02\x02" + bigEndian(objects.size(), 8) +
           bigEndian(0, 8) + bigEndian(table, 8);
}

/// A container object: its marker, then its references.
std::string container(const std::string& marker, const std::vector<std::size_t>& references) {
    std::string object = marker;
    for (const std::size_t index : references) {
        object += static_cast<char>(index >> 8U);
        object += static_cast<char>(index & 0xFFU);
    }
    return object;
}

class PropertyListTest : public testing::Test {
protected:
    /// What the key K of a dictionary holds whose other key leads to the objects given; K is object 1.
    [[nodiscard]] std::optional<std::string> keyBeside(const std::vector<std::string>& objects) const {
        std::vector<std::string> all{container("\xD2", {1, 3, 2, 4}), "\x51K", "\x51v", "\x51L"};
        all.insert(all.end(), objects.begin(), objects.end());
        return propertyListString(folder.makeFile("list.plist", binaryList(all)), "K");
    }

    test::TemporaryDirectory folder;
};

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

TEST_F(PropertyListTest, MakesAFileWithItsFoldersForItsOwnerAlone) {
    const std::string path = folder.path("home/Library/Preferences/com.user.Zentrill.plist");
    const mode_t previous = ::umask(0);
    const bool written = setPropertyListString(path, "NSWindow Frame MainWindow", "1 2 3 4 <&> \xC3\xA4");
    ::umask(previous);
    ASSERT_TRUE(written);
    EXPECT_EQ(propertyListString(path, "NSWindow Frame MainWindow"), "1 2 3 4 <&> \xC3\xA4");
    EXPECT_THAT(contentOf(path), StartsWith("<?xml"));
    EXPECT_EQ(std::filesystem::status(path).permissions(), std::filesystem::perms(0600));
    EXPECT_EQ(std::filesystem::status(folder.path("home")).permissions(), std::filesystem::perms(0700));
    EXPECT_EQ(std::filesystem::status(folder.path("home/Library/Preferences")).permissions(),
              std::filesystem::perms(0700));
}

TEST_F(PropertyListTest, KeepsAllOtherKeysOfBothForms) {
    for (const std::string& before : {infoList(), binaryForm(infoList())}) {
        const std::string path = folder.makeFile("list.plist", before);
        ASSERT_TRUE(setPropertyListString(path, "Frame", "10 20"));
        ASSERT_TRUE(setPropertyListString(path, "Frame", "30 40"));
        EXPECT_EQ(propertyListString(path, "Frame"), "30 40");
        EXPECT_EQ(propertyListString(path, "CFBundleName"), "A & B");
        const std::string after = contentOf(path);
        EXPECT_THAT(after, StartsWith("<?xml"));
        for (const char* kept : {"<integer>7</integer>", "<date>2024-05-06T07:08:09Z</date>", "AAEC",
                                 "<key>On</key>\n\t<true/>", "<string>x</string>"}) {
            EXPECT_THAT(after, HasSubstr(kept));
        }
        EXPECT_THAT(after, testing::Not(HasSubstr("10 20")));
    }
}

TEST_F(PropertyListTest, ReplacesAValueOfAnotherKind) {
    const std::string path = folder.makeFile("list.plist", infoList());
    ASSERT_TRUE(setPropertyListString(path, "Count", "seven"));
    EXPECT_EQ(propertyListString(path, "Count"), "seven");
}

TEST_F(PropertyListTest, ReplacesAFileThatHoldsNoDictionary) {
    for (const std::string& content : {std::string(), std::string("garbage"), xmlList("<array/>"),
                                       infoList().substr(0, infoList().size() / 2)}) {
        const std::string path = folder.makeFile("list.plist", content);
        ASSERT_TRUE(setPropertyListString(path, "K", "v")) << content;
        EXPECT_EQ(propertyListString(path, "K"), "v") << content;
    }
}

TEST_F(PropertyListTest, LeavesNoTemporaryFileBehind) {
    const std::string path = folder.path("made/list.plist");
    ASSERT_TRUE(setPropertyListString(path, "K", "v"));
    ASSERT_TRUE(setPropertyListString(path, "K", "w"));
    EXPECT_EQ(std::distance(std::filesystem::directory_iterator(folder.path("made")), {}), 1);
}

TEST_F(PropertyListTest, WritesNeitherOverALinkNorThroughIt) {
    const std::string target = folder.makeFile("elsewhere/list.plist", infoList());
    const std::string dangling = folder.makeLink("dangling", folder.path("elsewhere/new.plist"));
    for (const std::string& link : {folder.makeLink("link", target), dangling}) {
        EXPECT_FALSE(setPropertyListString(link, "K", "v"));
        EXPECT_TRUE(std::filesystem::is_symlink(link));
    }
    EXPECT_EQ(contentOf(target), infoList());
    EXPECT_FALSE(std::filesystem::exists(folder.path("elsewhere/new.plist")));
}

TEST_F(PropertyListTest, WritesOverNothingButRegularFiles) {
    const std::string directory = folder.makeDirectory("folder");
    EXPECT_FALSE(setPropertyListString(directory, "K", "v"));
    const std::string pipe = folder.path("pipe");
    ASSERT_EQ(::mkfifo(pipe.c_str(), 0600), 0);
    EXPECT_FALSE(setPropertyListString(pipe, "K", "v"));
    EXPECT_TRUE(std::filesystem::is_fifo(pipe));
    EXPECT_FALSE(setPropertyListString(folder.makeFile("file") + "/list.plist", "K", "v"));
    EXPECT_FALSE(setPropertyListString(folder.path("folder/"), "K", "v"));
    EXPECT_FALSE(setPropertyListString("list.plist", "K", "v"));
    EXPECT_FALSE(setPropertyListString("", "K", "v"));
}

TEST_F(PropertyListTest, TextsWithANulAreRefused) {
    const std::string path = folder.path("list.plist");
    const std::string nul("a\0b", 3);
    EXPECT_FALSE(setPropertyListString(path, nul, "v"));
    EXPECT_FALSE(setPropertyListString(path, "K", nul));
    EXPECT_FALSE(setPropertyListString(path + nul, "K", "v"));
    EXPECT_TRUE(std::filesystem::is_empty(folder.path()));
}

TEST_F(PropertyListTest, AFolderWithoutWritePermissionKeepsTheOldFile) {
    const std::string path = folder.makeFile("closed/list.plist", infoList());
    const std::string unreadable = folder.makeFile("open/list.plist", infoList());
    std::filesystem::permissions(folder.path(), std::filesystem::perms(0755));
    std::filesystem::permissions(folder.path("closed"), std::filesystem::perms(0555));
    std::filesystem::permissions(folder.path("open"), std::filesystem::perms::all);
    std::filesystem::permissions(unreadable, std::filesystem::perms::none);
    EXPECT_TRUE(test::passesInChild([&] {
        test::becomeOrdinaryUser();
        EXPECT_FALSE(setPropertyListString(path, "K", "v"));
        EXPECT_FALSE(setPropertyListString(folder.path("closed/new/list.plist"), "K", "v"));
        // Its keys cannot be kept, so the file is.
        EXPECT_FALSE(setPropertyListString(unreadable, "K", "v"));
    }));
    EXPECT_EQ(contentOf(path), infoList());
    std::filesystem::permissions(unreadable, std::filesystem::perms::owner_read);
    EXPECT_EQ(contentOf(unreadable), infoList());
    EXPECT_EQ(std::distance(std::filesystem::directory_iterator(folder.path("closed")), {}), 1);
}

TEST_F(PropertyListTest, AFullDiskKeepsTheOldFileAndNoTemporaryOne) {
    if (const auto obstacle = test::mountObstacle()) {
        GTEST_SKIP() << *obstacle;
    }
    const std::string mountPoint = folder.makeDirectory("disk");
    EXPECT_TRUE(test::passesInChild([&] {
        test::enterPrivateMountNamespace();
        test::mountMemoryDisk(mountPoint, "size=16k");
        const std::string path = folder.makeFile("disk/list.plist", infoList());
        EXPECT_FALSE(setPropertyListString(path, "K", std::string(100'000, 'x')));
        EXPECT_EQ(contentOf(path), infoList());
        EXPECT_EQ(std::distance(std::filesystem::directory_iterator(mountPoint), {}), 1);
        EXPECT_TRUE(setPropertyListString(path, "K", "fits"));
    }));
}

} // namespace
} // namespace zentrill
