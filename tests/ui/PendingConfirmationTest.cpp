#include "ui/PendingConfirmation.h"

#include <gtest/gtest.h>

namespace zentrill {
namespace {

AppInfo application(const std::string& name) {
    return {.name = name, .displayName = name};
}

const DockerImage webImage{.imageID = "sha256:0123456789abcdef" + std::string(48, '0'),
                           .tags = {"web:1", "web:2"},
                           .size = "1.24GB",
                           .connection = {.arguments = {"--context", "desktop"}, .displayName = "desktop"}};

TEST(PendingConfirmationTest, WordsTheUninstallOfOneApplication) {
    const PendingConfirmation pending{
        PendingConfirmation::Apps{.apps = {application("Ollama")}, .preserveCredentials = true}};
    EXPECT_EQ(pending.title(), "Uninstall 1 Application?");
    EXPECT_EQ(
        pending.message(),
        "Selected: Ollama. Known app runtimes will be removed. Recognized credentials and uncertain files in "
        "selected data trees will be left for review; residual data may remain.");
    EXPECT_EQ(pending.actionTitle(), "Uninstall");
}

TEST(PendingConfirmationTest, WordsTheUninstallOfSeveralApplicationsWithoutTheShield) {
    const PendingConfirmation pending{PendingConfirmation::Apps{
        .apps = {application("Ollama"), application("LM Studio")}, .preserveCredentials = false}};
    EXPECT_EQ(pending.title(), "Uninstall 2 Applications?");
    EXPECT_EQ(pending.message(), "Selected: Ollama, LM Studio. Files inside the selected uninstall targets, "
                                 "including recognized nested "
                                 "credentials, will be permanently removed.");
}

TEST(PendingConfirmationTest, CountsNoApplicationInThePlural) {
    EXPECT_EQ(PendingConfirmation{PendingConfirmation::Apps{}}.title(), "Uninstall 0 Applications?");
}

TEST(PendingConfirmationTest, WordsTheDeletionOfAModel) {
    const PendingConfirmation pending{LocalModel{.name = "llama3:latest", .sizeBytes = 4'660'000'000}};
    EXPECT_EQ(pending.title(), "Delete llama3:latest?");
    EXPECT_EQ(pending.message(),
              "Permanently delete llama3:latest (4.66 GB)? This operation cannot be undone.");
    EXPECT_EQ(pending.actionTitle(), "Delete Permanently");
}

TEST(PendingConfirmationTest, SaysThatTheSizeOfAModelIsUnknown) {
    const PendingConfirmation pending{LocalModel{.name = "x", .sizeBytes = 0}};
    EXPECT_EQ(pending.message(), "Permanently delete x (Unknown size)? This operation cannot be undone.");
}

TEST(PendingConfirmationTest, WordsTheRemovalOfAContainer) {
    const PendingConfirmation pending{DockerContainer{.id = "c1", .name = "web"}};
    EXPECT_EQ(pending.title(), "Delete Container?");
    EXPECT_EQ(pending.message(),
              "Permanently delete container web? It will be stopped first if it is running.");
    EXPECT_EQ(pending.actionTitle(), "Delete");
}

TEST(PendingConfirmationTest, WordsTheRemovalOfAnImage) {
    const PendingConfirmation pending{webImage};
    EXPECT_EQ(pending.title(), "Remove Docker Image?");
    EXPECT_EQ(
        pending.message(),
        "Remove web:1 (0123456789ab, 1.24GB) from Docker connection 'desktop'? Docker will receive the exact "
        "full image ID without force. Images can share layers, so the displayed virtual size is not "
        "guaranteed "
        "reclaimable space.");
    EXPECT_EQ(pending.actionTitle(), "Remove Image");
}

TEST(PendingConfirmationTest, NamesAnImageWithoutTag) {
    DockerImage untagged = webImage;
    untagged.tags.clear();
    EXPECT_TRUE(
        PendingConfirmation{untagged}.message().starts_with("Remove Untagged image (0123456789ab, 1.24GB)"));
}

TEST(PendingConfirmationTest, WordsTheSelfUninstall) {
    const PendingConfirmation pending{PendingConfirmation::SelfUninstall{}};
    EXPECT_EQ(pending.title(), "Self-Uninstall Zentrill?");
    EXPECT_EQ(pending.message(),
              "Permanently remove the installed Zentrill app plus its preferences, cache, application "
              "support, logs, "
              "and saved window state? macOS backups and system logs are outside the app's control.");
    EXPECT_EQ(pending.actionTitle(), "Uninstall Zentrill");
}

} // namespace
} // namespace zentrill
