#include "deletion/ItemPaths.h"

#include "platform/Paths.h"

#include <utility>

namespace zentrill {

ItemPaths::ItemPaths(std::string reported, std::string standardized)
    : reported_(std::move(reported)),
      reportedLength_(reported_.find_last_not_of('/') + 1),
      standardized_(std::move(standardized)) {}

std::string ItemPaths::name() const {
    return std::string(paths::lastComponent(standardized_));
}

std::string ItemPaths::reported(std::string_view below) const {
    if (below.empty()) {
        return reported_;
    }
    return reported_.substr(0, reportedLength_).append(below);
}

std::string ItemPaths::reported(std::string_view below, std::string_view name) const {
    std::string path;
    path.reserve(reportedLength_ + below.size() + 1 + name.size());
    return path.append(reported_, 0, reportedLength_).append(below).append(1, '/').append(name);
}

std::string ItemPaths::standardized(std::string_view below) const {
    return std::string(standardized_).append(below);
}

} // namespace zentrill
