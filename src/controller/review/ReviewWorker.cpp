#include "controller/review/ReviewWorker.h"

#include "controller/review/ReviewMaker.h"

#include <utility>

namespace zentrill {

ReviewWorker::ReviewWorker(std::shared_ptr<MainQueue> link, std::shared_ptr<const SafeDeletionEngine> engine)
    : engine_(std::move(engine)), work_(std::move(link), "com.zentrill.review") {}

void ReviewWorker::start(ReviewSubject subject, SafetyShield shield, Show show, std::size_t listedEntries) {
    complete_ = false;
    work_.start(
        [engine = engine_, subject = std::move(subject), shield, listedEntries](const auto& publish,
                                                                                const auto& shouldStop) {
            ReviewMaker(engine, shield, listedEntries, publish, shouldStop).make(subject);
        },
        [this, show = std::move(show)](const ReviewContent& content) {
            complete_ = content.complete;
            show(content);
        });
}

} // namespace zentrill
