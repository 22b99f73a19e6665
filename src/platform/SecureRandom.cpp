#include "platform/SecureRandom.h"

#include "platform/Precondition.h"

#include <sys/random.h>
#include <unistd.h>

namespace zentrill {

std::uint32_t secureRandomBits() noexcept {
    std::uint32_t bits = 0;
    precondition(::getentropy(&bits, sizeof bits) == 0, "the system's random generator is not available");
    return bits;
}

} // namespace zentrill
