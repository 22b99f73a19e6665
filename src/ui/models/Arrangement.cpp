#include "ui/models/Arrangement.h"

#include "controller/DisplayText.h"

#include <QStringMatcher>

#include <algorithm>
#include <compare>
#include <cstddef>
#include <functional>
#include <utility>

namespace zentrill {

namespace {

/// A record with its sort key, so that this is not made again for each comparison.
template <typename Record>
struct Candidate {
    const Record* record = nullptr;
    QString name;
    double size = 0;
};

/// Removes the digits at the front of the text and returns them without leading zeros.
QStringView takeNumber(QStringView& text) {
    qsizetype end = 0;
    while (end < text.size() && text[end].isDigit()) {
        ++end;
    }
    qsizetype begin = 0;
    while (begin < end && text[begin] == QLatin1Char('0')) {
        ++begin;
    }
    const QStringView number = text.mid(begin, end - begin);
    text = text.mid(end);
    return number;
}

std::strong_ordering compareNames(QStringView left, QStringView right) {
    while (!left.isEmpty() && !right.isEmpty()) {
        if (left.front().isDigit() && right.front().isDigit()) {
            const QStringView leftNumber = takeNumber(left);
            const QStringView rightNumber = takeNumber(right);
            if (leftNumber.size() != rightNumber.size()) {
                return leftNumber.size() <=> rightNumber.size();
            }
            if (const int order = leftNumber.compare(rightNumber); order != 0) {
                return order <=> 0;
            }
        } else if (left.front() != right.front()) {
            return left.front().unicode() <=> right.front().unicode();
        } else {
            left = left.mid(1);
            right = right.mid(1);
        }
    }
    return left.size() <=> right.size();
}

/// What is equal stays as it was: the records stand one after the other.
template <typename Record>
void sort(std::vector<Candidate<Record>>& candidates, ListOrder order) {
    using Item = Candidate<Record>;
    switch (order) {
    case ListOrder::asScanned:
        break;
    case ListOrder::largestFirst:
        std::ranges::sort(candidates, [](const Item& left, const Item& right) {
            return left.size != right.size ? left.size > right.size : left.record < right.record;
        });
        break;
    case ListOrder::byName:
        std::ranges::sort(candidates, [](const Item& left, const Item& right) {
            const std::strong_ordering names = compareNames(left.name, right.name);
            return names != 0 ? names < 0 : left.record < right.record;
        });
        break;
    }
}

/// `found` says whether a search for the needle finds a record; `size` is negative if it is not known.
template <typename Record>
std::vector<Record> arrangedBy(const std::vector<Record>& records, const Arrangement& arrangement,
                               const std::function<bool(const Record&, const QStringMatcher&)>& found,
                               const std::function<QString(const Record&)>& name,
                               const std::function<double(const Record&)>& size) {
    const QStringMatcher matcher(arrangement.needle, Qt::CaseInsensitive);
    std::vector<Candidate<Record>> candidates;
    for (const Record& record : records) {
        if (!arrangement.needle.isEmpty() && !found(record, matcher)) {
            continue;
        }
        Candidate<Record> candidate{.record = &record};
        if (arrangement.order == ListOrder::byName) {
            candidate.name = name(record).toCaseFolded();
        } else if (arrangement.order == ListOrder::largestFirst) {
            candidate.size = size(record);
        }
        candidates.push_back(std::move(candidate));
    }
    sort(candidates, arrangement.order);
    std::vector<Record> result;
    result.reserve(candidates.size());
    std::ranges::transform(candidates, std::back_inserter(result),
                           [](const Candidate<Record>& candidate) { return *candidate.record; });
    return result;
}

bool holds(const std::string& bytes, const QStringMatcher& matcher) {
    return matcher.indexIn(displayName(bytes)) >= 0;
}

} // namespace

bool isNameBefore(QStringView left, QStringView right) {
    return compareNames(left, right) < 0;
}

std::vector<LocalModel> arranged(const std::vector<LocalModel>& models, const Arrangement& arrangement) {
    return arrangedBy<LocalModel>(
        models, arrangement,
        [](const LocalModel& model, const QStringMatcher& matcher) { return holds(model.name, matcher); },
        [](const LocalModel& model) { return displayName(model.name); },
        [](const LocalModel& model) { return static_cast<double>(model.sizeBytes); });
}

std::vector<DockerImage> arranged(const std::vector<DockerImage>& images, const Arrangement& arrangement) {
    return arrangedBy<DockerImage>(
        images, arrangement,
        [](const DockerImage& image, const QStringMatcher& matcher) {
            return holds(image.displayName(), matcher) || holds(image.shortID(), matcher);
        },
        [](const DockerImage& image) { return displayName(image.displayName()); },
        [](const DockerImage& image) { return image.sizeBytes().value_or(-1); });
}

std::vector<DockerContainer> arranged(const std::vector<DockerContainer>& containers,
                                      const Arrangement& arrangement) {
    return arrangedBy<DockerContainer>(
        containers, {.order = ListOrder::asScanned, .needle = arrangement.needle},
        [](const DockerContainer& container, const QStringMatcher& matcher) {
            return holds(container.name, matcher) || holds(container.image, matcher);
        },
        {}, {});
}

} // namespace zentrill
