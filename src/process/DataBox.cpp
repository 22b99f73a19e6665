#include "process/DataBox.h"

#include "platform/Utf8.h"

#include <utility>

namespace zentrill {

void DataBox::append(std::string_view bytes) {
    const std::size_t room = limit_ - bytes_.size();
    cut_ = cut_ || bytes.size() > room;
    bytes_.append(bytes.substr(0, room));
}

DataBox::Text DataBox::take() {
    Text result{.text = std::exchange(bytes_, {}), .isWhole = true};
    if (std::exchange(cut_, false)) {
        result.isWhole = false;
        result.text.resize(result.text.size() - incompleteUtf8TailLength(result.text));
    }
    if (!isValidUtf8(result.text)) {
        result.isWhole = false;
        result.text.clear();
    }
    return result;
}

} // namespace zentrill
