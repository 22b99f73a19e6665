#include "models/LocalModel.h"

#include "platform/ByteCountFormatter.h"

namespace zentrill {

std::string LocalModel::id() const {
    return source + '\0' + path;
}

std::string LocalModel::sizeFormatted() const {
    return sizeBytes < 1 ? "Unknown size" : formattedByteCount(sizeBytes);
}

} // namespace zentrill
