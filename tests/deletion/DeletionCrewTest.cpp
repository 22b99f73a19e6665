#include "deletion/DeletionCrew.h"

#include "support/Processes.h"

#include <gtest/gtest.h>

#include <functional>
#include <future>
#include <memory>
#include <thread>
#include <utility>

namespace zentrill {
namespace {

class Job : public DeletionJob {
public:
    explicit Job(std::function<void(bool mayHelp)> body) : body_(std::move(body)) {}

private:
    void run(bool mayHelp) override { body_(mayHelp); }

    std::function<void(bool)> body_;
};

/// Keeps the crew's only helper inside of a job until it is told to go on.
class BusyHelper {
public:
    explicit BusyHelper(DeletionCrew& crew)
        : crew_(crew), job_(std::make_shared<Job>([this](bool) {
              begun_.set_value();
              goOn_.get_future().wait();
          })) {
        crew_.offer(job_);
        begun_.get_future().wait();
    }

    ~BusyHelper() { crew_.await(*job_, false); }

    BusyHelper(const BusyHelper&) = delete;
    BusyHelper& operator=(const BusyHelper&) = delete;

    [[nodiscard]] const DeletionJob& job() const { return *job_; }

    void goOn() { goOn_.set_value(); }

private:
    DeletionCrew& crew_;
    std::promise<void> begun_;
    std::promise<void> goOn_;
    std::shared_ptr<Job> job_;
};

TEST(DeletionCrew, AHelperDoesWhatIsOffered) {
    DeletionCrew crew(1);
    std::thread::id doneBy;
    const auto job = std::make_shared<Job>([&doneBy](bool mayHelp) {
        EXPECT_TRUE(mayHelp);
        doneBy = std::this_thread::get_id();
    });
    crew.offer(job);
    crew.await(*job, false);
    EXPECT_TRUE(job->isFinished());
    EXPECT_NE(doneBy, std::this_thread::get_id());
}

TEST(DeletionCrew, AHelperThatSleepsIsWoken) {
    DeletionCrew crew(1);
    for (int round = 0; round < 10; ++round) {
        const auto job = std::make_shared<Job>([](bool) {});
        crew.offer(job);
        ASSERT_TRUE(test::eventually([&job] { return job->isFinished(); }));
    }
}

TEST(DeletionCrew, WhatNobodyHasBegunCanBeTakenBack) {
    DeletionCrew crew(1);
    BusyHelper helper(crew);
    bool ran = false;
    const auto job = std::make_shared<Job>([&ran](bool) { ran = true; });
    crew.offer(job);
    EXPECT_TRUE(crew.withdraw(*job));
    EXPECT_FALSE(crew.withdraw(*job));
    EXPECT_FALSE(crew.withdraw(helper.job()));
    helper.goOn();
    crew.await(helper.job(), false);
    EXPECT_FALSE(ran);
}

TEST(DeletionCrew, OneThatWaitsHelpsMeanwhileAndThoseJobsDoNotHelpInTurn) {
    DeletionCrew crew(1);
    BusyHelper helper(crew);
    std::thread::id doneBy;
    const auto job = std::make_shared<Job>([&](bool mayHelp) {
        EXPECT_FALSE(mayHelp);
        doneBy = std::this_thread::get_id();
        helper.goOn();
    });
    crew.offer(job);
    crew.await(helper.job(), true);
    EXPECT_EQ(doneBy, std::this_thread::get_id());
}

TEST(DeletionCrew, WantsNoMoreThanAShortQueue) {
    DeletionCrew crew(1);
    BusyHelper helper(crew);
    int offered = 0;
    while (crew.wantsJobs()) {
        crew.offer(std::make_shared<Job>([](bool) {}));
        ++offered;
        ASSERT_LE(offered, 100);
    }
    EXPECT_EQ(offered, 2);
    helper.goOn();
}

TEST(DeletionCrew, WithoutHelpersWantsNothing) {
    EXPECT_FALSE(DeletionCrew(0).wantsJobs());
}

} // namespace
} // namespace zentrill
