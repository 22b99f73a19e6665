#include "deletion/EarlierPlans.h"

#include "deletion/PathAliases.h"
#include "platform/Paths.h"

#include <algorithm>

namespace zentrill {

namespace {

std::string comparable(std::string_view path) {
    return aliasNormalized(paths::standardized(path));
}

} // namespace

void EarlierPlans::add(std::string_view path, bool goes) {
    deletions_.push_back({.path = comparable(path), .goes = goes});
}

bool EarlierPlans::covers(std::string_view path) const {
    const std::string item = comparable(path);
    return std::ranges::any_of(
        deletions_, [&item](const Deletion& deletion) { return paths::isSameOrBelow(item, deletion.path); });
}

bool EarlierPlans::removes(std::string_view path) const {
    const std::string item = comparable(path);
    return std::ranges::any_of(deletions_, [&item](const Deletion& deletion) {
        return deletion.goes && paths::isSameOrBelow(item, deletion.path);
    });
}

std::vector<EarlierPlans::Item> EarlierPlans::itemsIn(std::string_view folder) const {
    std::vector<Item> items;
    if (deletions_.empty()) {
        return items;
    }
    const std::string around = comparable(folder);
    for (const Deletion& deletion : deletions_) {
        if (paths::parent(deletion.path) == around) {
            items.push_back({.name = paths::lastComponent(deletion.path), .goes = deletion.goes});
        }
    }
    return items;
}

} // namespace zentrill
