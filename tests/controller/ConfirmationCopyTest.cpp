#include "controller/ConfirmationCopy.h"

#include <gtest/gtest.h>

namespace zentrill {
namespace {

TEST(ConfirmationCopyTest, NamesTheSelectionAndWhatTheShieldKeeps) {
    EXPECT_EQ(ConfirmationCopy::applications({"Ollama", "LM Studio"}, true),
              "Selected: Ollama, LM Studio. Known app runtimes will be removed. Recognized credentials and "
              "uncertain files in selected data trees will be left for review; residual data may remain.");
}

TEST(ConfirmationCopyTest, SaysThatNothingIsKeptWithoutTheShield) {
    EXPECT_EQ(ConfirmationCopy::applications({"Claude (desktop)"}, false),
              "Selected: Claude (desktop). Files inside the selected uninstall targets, including recognized "
              "nested credentials, will be permanently removed.");
}

TEST(ConfirmationCopyTest, PutsTheEndingRightBehindAnEmptyList) {
    EXPECT_EQ(ConfirmationCopy::applications({}, false),
              "Selected: . Files inside the selected uninstall targets, including recognized nested "
              "credentials, will be permanently removed.");
}

} // namespace
} // namespace zentrill
