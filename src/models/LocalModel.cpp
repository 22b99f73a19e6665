#include "models/LocalModel.h"

#include "platform/ByteCountFormatter.h"
#include "platform/HashCombiner.h"

namespace zentrill {

std::string LocalModel::id() const {
    return source + '\0' + path;
}

std::string LocalModel::sizeFormatted() const {
    return sizeBytes < 1 ? "Unknown size" : formattedByteCount(sizeBytes);
}

} // namespace zentrill

std::size_t std::hash<zentrill::LocalModel>::operator()(const zentrill::LocalModel& model) const {
    return zentrill::HashCombiner()
        .add(model.name)
        .add(model.source)
        .add(model.sizeBytes)
        .add(model.path)
        .add(model.isSelected)
        .value();
}
