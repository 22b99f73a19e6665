#include "process/DataBox.h"

#include "platform/Utf8.h"

#include <utility>

namespace zentrill {

void DataBox::append(std::string_view bytes) {
    const std::size_t room = limit_ - bytes_.size();
    cut_ = cut_ || bytes.size() > room;
    bytes_.append(bytes.substr(0, room));
}

std::string DataBox::takeText() {
    std::string text = std::exchange(bytes_, {});
    if (std::exchange(cut_, false)) {
        text.resize(text.size() - incompleteUtf8TailLength(text));
    }
    if (!isValidUtf8(text)) {
        text.clear();
    }
    return text;
}

} // namespace zentrill
