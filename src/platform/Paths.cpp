#include "platform/Paths.h"

#include <algorithm>

namespace zentrill::paths {

std::vector<std::string_view> components(std::string_view path) {
    std::vector<std::string_view> parts;
    if (path.starts_with('/')) {
        parts.push_back(path.substr(0, 1));
    }
    std::size_t begin = 0;
    while (begin < path.size()) {
        const std::size_t end = std::min(path.find('/', begin), path.size());
        if (end > begin) {
            parts.push_back(path.substr(begin, end - begin));
        }
        begin = end + 1;
    }
    return parts;
}

std::string standardized(std::string_view path) {
    const bool absolute = path.starts_with('/');
    std::vector<std::string_view> kept;
    for (const std::string_view part : components(path)) {
        if (part == "/" || part == ".") {
            continue;
        }
        const bool climbs = part == "..";
        if (climbs && !kept.empty() && kept.back() != "..") {
            kept.pop_back();
        } else if (!climbs || !absolute) {
            kept.push_back(part);
        }
    }
    std::string result;
    result.reserve(path.size());
    for (const std::string_view part : kept) {
        if (absolute || !result.empty()) {
            result += '/';
        }
        result += part;
    }
    if (result.empty() && absolute) {
        return "/";
    }
    if (result.empty() && !path.empty()) {
        return ".";
    }
    return result;
}

std::string_view lastComponent(std::string_view path) {
    const std::size_t last = path.find_last_not_of('/');
    if (last == std::string_view::npos) {
        return path.substr(0, path.empty() ? 0 : 1);
    }
    const std::size_t slash = path.rfind('/', last);
    const std::size_t begin = slash == std::string_view::npos ? 0 : slash + 1;
    return path.substr(begin, last + 1 - begin);
}

std::string_view parent(std::string_view path) {
    const std::size_t last = path.find_last_not_of('/');
    if (last == std::string_view::npos) {
        return path.substr(0, path.empty() ? 0 : 1);
    }
    const std::size_t slash = path.rfind('/', last);
    if (slash == std::string_view::npos) {
        return {};
    }
    const std::size_t end = path.find_last_not_of('/', slash);
    return end == std::string_view::npos ? path.substr(0, 1) : path.substr(0, end + 1);
}

std::string_view extension(std::string_view path) {
    const std::string_view name = lastComponent(path);
    const std::size_t dot = name.rfind('.');
    return dot == std::string_view::npos || dot == 0 ? std::string_view() : name.substr(dot + 1);
}

std::string appending(std::string_view directory, std::string_view name) {
    std::string joined;
    joined.reserve(directory.size() + name.size() + 1);
    joined += directory;
    if (!joined.ends_with('/')) {
        joined += '/';
    }
    joined += name.substr(std::min(name.find_first_not_of('/'), name.size()));
    return joined;
}

bool isSameOrBelow(std::string_view path, std::string_view ancestor) {
    if (!path.starts_with(ancestor)) {
        return false;
    }
    return path.size() == ancestor.size() || ancestor.ends_with('/') || path[ancestor.size()] == '/';
}

std::string expandingTilde(std::string_view path, std::string_view home) {
    if (home.empty() || (path != "~" && !path.starts_with("~/"))) {
        return std::string(path);
    }
    const std::string_view rest = path.substr(1);
    // Only the path of the root ends in a slash.
    return home.ends_with('/') && !rest.empty() ? std::string(home.substr(0, home.size() - 1)).append(rest)
                                                : std::string(home).append(rest);
}

} // namespace zentrill::paths
