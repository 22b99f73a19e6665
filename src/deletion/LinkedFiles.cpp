#include "deletion/LinkedFiles.h"

namespace zentrill {

LinkedFiles::Count LinkedFiles::add(const EntryStatus& file, unsigned end, bool goes) {
    if (file.linkCount <= 1) {
        return {.firstOfItsEnd = true, .lastLinkGoes = goes};
    }
    const auto [found, isNew] = files_.try_emplace(file.identity);
    File& known = found->second;
    const auto bit = static_cast<std::uint8_t>(1U << end);
    const Count count{.firstOfItsEnd = (known.ends & bit) == 0,
                      .lastLinkGoes = goes && known.going + 1 == file.linkCount};
    known.ends |= bit;
    known.going += goes ? 1 : 0;
    if (++known.met == file.linkCount) {
        files_.erase(found);
    }
    return count;
}

} // namespace zentrill
