#pragma once

#include "Comparison.h"
#include "Heartbeat.h"
#include "controller/UninstallerViewModel.h"

#include <memory>
#include <string>

namespace zentrill::bench {

constexpr int logLineCount = 1'000'000;

/// The longest that the main thread may be kept from anything else, in seconds.
constexpr double longestTurn = 0.050;

/// The most memory that the log may take, in bytes.
constexpr double mostLogMemory = 300e6;

/// A controller that finds nothing and starts nothing.
[[nodiscard]] std::unique_ptr<UninstallerViewModel> makeQuietController();

/// Writes the million lines from the calling thread.
void writeLog(UninstallerViewModel& controller);

/// Line `index`, from 0, without its time of day.
[[nodiscard]] std::string logLine(int index);

/// Whether `ours` stays within `limit`, which stands in the peer's place.
bool reportLimit(const std::string& bench, double ours, double limit);

/// Whether no turn of the main thread took longer than a person would notice.
bool reportTurns(const std::string& bench, const Heartbeat& heartbeat);

/// The trials with the window that shows the log, on this display.
[[nodiscard]] bool passesWithWindow(const std::string& display);

} // namespace zentrill::bench
