#pragma once

#include "DeletionForm.h"
#include "deletion/SafeDeletionEngine.h"

#include <functional>
#include <string>
#include <utility>

namespace zentrill::test {

/// An engine that runs `before` when it is about to remove or enter the item at `path`, which is the moment
/// between its look at the item and its deed.
inline SafeDeletionEngine engineDisturbedAt(std::string path, std::function<void()> before) {
    return newEngine([path = std::move(path), before = std::move(before)](const std::string& asked) {
        if (asked == path) {
            before();
        }
        return true;
    });
}

} // namespace zentrill::test
