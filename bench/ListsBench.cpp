// Ten thousand models in the window: how long the next frame takes when their pane is opened, when they are
// put in another order and at each key of a search, and what memory it takes. And a review of a model of a
// million files: when its first rows are there, how long the main thread is kept at a time, what memory it
// takes.

#include "Apart.h"
#include "BenchWindow.h"
#include "LogTrial.h"
#include "VirtualScreen.h"
#include "support/confinement/Confinement.h"
#include "ui/ContentViewState.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <memory>
#include <string>

#include <fcntl.h>
#include <unistd.h>

namespace zentrill::bench {
namespace {

constexpr int modelCount = 10'000;
constexpr int reviewedFiles = 1'000'000;

/// What a person takes for at once.
constexpr double longestFrame = 0.050;
constexpr double mostListMemory = 80e6;

constexpr double longestReviewTurn = 0.016;
constexpr double firstRowsAfter = 0.100;
constexpr double mostReviewMemory = 150e6;

/// An empty file that says that it is so long.
void makeFile(const std::string& path, off_t size) {
    const int file = ::open(path.c_str(), O_CREAT | O_WRONLY | O_CLOEXEC, 0600);
    if (file < 0 || ::ftruncate(file, size) != 0) {
        std::perror(path.c_str());
        std::exit(2);
    }
    ::close(file);
}

void makeModels(const std::string& home) {
    const std::string folder = home + "/.lmstudio/models/publisher";
    std::filesystem::create_directories(folder);
    for (int number = 0; number < modelCount; ++number) {
        // Neither the order of the names nor that of the sizes is that of the scan.
        makeFile(folder + "/model-" + std::to_string(number * 7919 % modelCount) + "-instruct.gguf",
                 static_cast<off_t>(number * 104'729 % 1'000'003) * 1000);
    }
}

void makeHubModel(const std::string& home) {
    const std::string folder = home + "/.cache/huggingface/hub/models--org--large/blobs";
    for (int part = 0; part < 100; ++part) {
        const std::string inside = folder + "/" + std::to_string(part);
        std::filesystem::create_directories(inside);
        for (int number = 0; number < reviewedFiles / 100; ++number) {
            makeFile(inside + "/" + std::to_string(number), 1);
        }
    }
}

/// The window over what a scan of the home folder has found.
std::unique_ptr<UninstallerViewModel> scanned(std::size_t models) {
    auto controller = makeQuietController();
    controller->scanSystem();
    runUntil([&] { return !controller->isBusy(); });
    if (controller->localModels().size() != models) {
        std::fprintf(stderr, "the scan found %zu models\n", controller->localModels().size());
        std::exit(2);
    }
    return controller;
}

bool reportFrame(const std::string& what, double seconds) {
    return reportLimit("lists: " + what + ", seconds to the next frame", seconds, longestFrame);
}

bool lists(const std::string& home) {
    makeModels(home);
    BenchWindow window(scanned(modelCount), "apps");
    forgetPeakMemory();
    ContentViewState& state = window.state();
    bool pass = reportFrame("opening the pane of 10,000 models",
                            window.secondsToFrame([&] { state.setSelectedTab(QStringLiteral("models")); }));
    ListStripState& strip = *state.modelStrip();
    double slowest = 0;
    for (const int order : {1, 2, 0, 2, 1, 0, 2, 1}) {
        slowest = std::max(slowest, window.secondsToFrame([&] { strip.setOrder(order); }));
    }
    pass = reportFrame("the slowest of eight orders", slowest) && pass;
    slowest = 0;
    strip.setSearching(true);
    for (const char* needle : {"m", "mo", "mod", "model-99", "model-9", "9", "", "x", "model", "instruct"}) {
        slowest =
            std::max(slowest, window.secondsToFrame([&] { strip.setNeedle(QString::fromLatin1(needle)); }));
    }
    pass = reportFrame("the slowest key of a search", slowest) && pass;
    return reportLimit("lists: peak proportional memory, bytes", peakProportionalMemory(), mostListMemory) &&
           pass;
}

bool review(const std::string& home) {
    makeHubModel(home);
    BenchWindow window(scanned(1), "models");
    forgetPeakMemory();
    ContentViewState& state = window.state();
    bool pass = true;
    {
        const Heartbeat heartbeat;
        const double first = secondsOf([&] {
            state.reviewModel(0);
            runUntil([&] { return state.review()->rows()->rowCount() > 1; });
        });
        pass = reportLimit("review: a million files, seconds to the first rows", first, firstRowsAfter);
        runUntil([&] { return !state.review()->isComputing(); });
        pass = reportLimit("review: a million files, longest turn, processor seconds", heartbeat.longestUse(),
                           longestReviewTurn) &&
               pass;
    }
    return reportLimit("review: a million files, peak proportional memory, bytes", peakProportionalMemory(),
                       mostReviewMemory) &&
           pass;
}

} // namespace
} // namespace zentrill::bench

int main(int argc, char** argv) {
    using namespace zentrill::bench;
    const VirtualScreen screen;
    zentrill::confinement::confineOrEnd();
    const std::string which = argc > 1 ? argv[1] : "";
    const bool listed =
        which == "review" || passesApart([&] { return passesOnDisplay(screen.display(), lists); });
    const bool reviewed =
        which == "lists" || passesApart([&] { return passesOnDisplay(screen.display(), review); });
    return listed && reviewed ? EXIT_SUCCESS : EXIT_FAILURE;
}
