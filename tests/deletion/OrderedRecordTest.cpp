#include "deletion/OrderedRecord.h"

#include "deletion/DeletionRecord.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace zentrill {
namespace {

using testing::ElementsAre;
using Record = OrderedRecord<DeletionRecord>;

void note(Record& record, const std::string& path) {
    record.current().report.removed.push_back(path);
}

DeletionRecord recordOf(const std::string& path) {
    return {.report = {.removed = {path}, .preserved = {}, .failures = {}}, .removedCount = 1};
}

TEST(OrderedRecord, WhatIsFilledInLateKeepsItsPlace) {
    Record record;
    note(record, "1");
    const Record::Place second = record.keepPlace();
    note(record, "3");
    const Record::Place fourth = record.keepPlace();
    note(record, "5");
    record.fill(second, recordOf("2"));
    note(record, "6");
    record.fill(fourth, recordOf("4"));
    note(record, "7");
    EXPECT_THAT(record.take().report.removed, ElementsAre("1", "2", "3", "4", "5", "6", "7"));
}

TEST(OrderedRecord, APlaceCanBeRecordedIntoAndHoldPlacesInTurn) {
    Record record;
    note(record, "1");
    const Record::Place second = record.keepPlace();
    note(record, "5");
    const Record::Place sixth = record.keepPlace();
    note(record, "9");
    record.goTo(sixth);
    note(record, "6");
    const Record::Place inner = record.keepPlace();
    note(record, "8");
    record.fill(inner, recordOf("7"));
    record.close(sixth);
    note(record, "10");
    record.goTo(second);
    note(record, "2");
    const Record::Place empty = record.keepPlace();
    note(record, "3");
    record.close(empty);
    note(record, "4");
    record.close(second);
    note(record, "11");
    EXPECT_THAT(record.take().report.removed,
                ElementsAre("1", "2", "3", "4", "5", "6", "7", "8", "9", "10", "11"));
}

TEST(OrderedRecord, EverythingInItIsJoinedInOrder) {
    Record record;
    record.current().removedCount = 1;
    const Record::Place place = record.keepPlace();
    record.current().removedCount = 2;
    record.current().report.preserved = {"kept last"};
    record.current().firstFailure = DeletionRecord::Failure{.path = "late", .description = "second"};
    DeletionRecord early{.report = {.removed = {}, .preserved = {"kept first"}, .failures = {"early: no"}},
                         .removedCount = 4,
                         .firstFailure = DeletionRecord::Failure{.path = "early", .description = "first"},
                         .foldersOfOthers = 3};
    record.fill(place, early);
    const DeletionRecord whole = record.take();
    EXPECT_EQ(whole.removedCount, 7U);
    EXPECT_EQ(whole.foldersOfOthers, 3U);
    EXPECT_THAT(whole.report.preserved, ElementsAre("kept first", "kept last"));
    EXPECT_THAT(whole.report.failures, ElementsAre("early: no"));
    EXPECT_EQ(whole.firstFailure->path, "early");
    EXPECT_EQ(whole.firstFailure->description, "first");
}

TEST(OrderedRecord, HoldsPartsForOpenPlacesOnly) {
    Record record;
    const Record::Place slow = record.keepPlace();
    std::vector<std::string> expected{"slow"};
    for (int i = 0; i < 10000; ++i) {
        const Record::Place place = record.keepPlace();
        ASSERT_EQ(record.partCount(), 5U);
        expected.push_back(std::to_string(i));
        record.fill(place, recordOf(expected.back()));
    }
    record.fill(slow, recordOf("slow"));
    EXPECT_EQ(record.partCount(), 1U);
    EXPECT_EQ(record.take().report.removed, expected);
}

} // namespace
} // namespace zentrill
