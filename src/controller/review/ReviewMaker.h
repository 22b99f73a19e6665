#pragma once

#include "controller/review/ReviewRow.h"
#include "controller/review/ReviewStage.h"
#include "controller/review/ReviewSubject.h"
#include "deletion/PlanRecord.h"
#include "deletion/SafeDeletionEngine.h"
#include "deletion/SafetyShield.h"

#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace zentrill {

/// Computes one review on the calling thread. It changes nothing and starts no program.
class ReviewMaker {
public:
    /// Receives what is known so far, several times a second, on any thread but never on two at once.
    using Show = std::function<void(ReviewContent)>;

    /// For each item and fate, the first `listedEntries` entries are listed and the others counted.
    ReviewMaker(std::shared_ptr<const SafeDeletionEngine> engine, SafetyShield shield,
                std::size_t listedEntries, Show show, std::function<bool()> shouldStop);

    /// Ends with a complete content, unless it is stopped.
    void make(const ReviewSubject& subject);

private:
    void reviewTools(const std::vector<AppInfo>& tools);
    void reviewTool(const AppInfo& tool, bool isOneOfSeveral, EarlierPlans& earlier);
    void reviewModel(const LocalModel& model);
    [[nodiscard]] PlanRecord emptyRecord() const;
    /// Shows an object for which no plan is made.
    void showKnown(std::vector<ReviewRow> rows, const QString& size);

    /// Shows the finished rows and `more`, those of what is being planned.
    void show(std::vector<ReviewRow> more, std::int64_t goingBytes, std::int64_t freedBytes,
              ReviewStage stage);

    std::shared_ptr<const SafeDeletionEngine> engine_;
    SafetyShield shield_;
    std::size_t listedEntries_;
    Show show_;
    std::function<bool()> shouldStop_;
    // For the tools that are finished.
    std::vector<ReviewRow> rows_;
    std::int64_t goingBytes_ = 0;
    std::int64_t freedBytes_ = 0;
};

} // namespace zentrill
