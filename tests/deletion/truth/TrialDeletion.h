#pragma once

#include "deletion/SafeDeletionEngine.h"
#include "truth/DiskSnapshot.h"
#include "truth/Random.h"

#include <cstdint>
#include <set>
#include <string>

namespace zentrill::test {

/// A random tree, and the deletion of a random item of it in a random way. The same seed makes the same.
class TrialDeletion {
public:
    enum class Kind : std::uint8_t {
        random,
        /// Of a larger tree as a whole, with the Safety Shield on: there is time to meet it at work.
        longAndShielded
    };

    /// In the empty folder `base`. Permissions are random as well, and bind an ordinary user only.
    TrialDeletion(std::uint64_t seed, std::string base, Kind kind = Kind::random);

    /// Deletes without looking at anything; for a process that is not to see the end of it.
    void deleteOnce() const;

    /// Takes what is there now for what was there before.
    void beginAnew();

    void run() { run(concurrency_); }

    void run(const DeletionConcurrency& concurrency);

    [[nodiscard]] const std::string& base() const { return base_; }

    /// The item in its standard form, and as the engine is told.
    [[nodiscard]] const std::string& item() const { return item_; }

    [[nodiscard]] const std::string& given() const { return given_; }

    [[nodiscard]] const DeletionOptions& options() const { return options_; }

    [[nodiscard]] const DeletionConcurrency& concurrency() const { return concurrency_; }

    /// What the engine's predicate refuses.
    [[nodiscard]] const std::set<std::string>& refused() const { return refused_; }

    /// What was given permissions at random.
    [[nodiscard]] const std::set<std::string>& sealed() const { return sealed_; }

    [[nodiscard]] const DiskSnapshot& before() const { return before_; }

    [[nodiscard]] const DiskSnapshot& after() const { return after_; }

    /// What the engine said beforehand, with every path.
    [[nodiscard]] const DeletionPlan& plan() const { return plan_; }

    [[nodiscard]] const DeletionReport& report() const { return report_; }

    [[nodiscard]] bool isShielded() const { return options_.preserveCredentials; }

    /// What the shield must keep, written down once more in the simplest way.
    [[nodiscard]] bool isCredential(const std::string& path) const;

    /// A reported path in the form of the snapshots.
    [[nodiscard]] std::string asOnDisk(const std::string& reported) const;

    /// The other way round, for a path at or below the item.
    [[nodiscard]] std::string asReported(const std::string& path) const;

    [[nodiscard]] std::string description() const;

private:
    void build(Kind kind);
    [[nodiscard]] SafeDeletionEngine engine(const DeletionConcurrency& concurrency) const;
    /// Everything in `base`, also what permissions hide.
    [[nodiscard]] DiskSnapshot look() const;

    Random random_;
    std::string base_;
    std::string item_;
    std::string given_;
    DeletionOptions options_;
    DeletionConcurrency concurrency_;
    std::set<std::string> refused_;
    std::set<std::string> sealed_;
    DiskSnapshot before_;
    DiskSnapshot after_;
    DeletionPlan plan_;
    DeletionReport report_;
};

[[nodiscard]] bool isAtOrBelow(const std::string& path, const std::string& top);

} // namespace zentrill::test
