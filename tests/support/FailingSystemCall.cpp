#include "support/FailingSystemCall.h"

#ifdef __linux__
#include <array>
#include <cstddef>
#include <cstdint>
#include <linux/filter.h>
#include <linux/seccomp.h>

#include <sys/prctl.h>

namespace zentrill::test {

bool makeSystemCallFail(int number, int error) {
    std::array<sock_filter, 4> instructions{
        sock_filter{BPF_LD | BPF_W | BPF_ABS, 0, 0, offsetof(seccomp_data, nr)},
        sock_filter{BPF_JMP | BPF_JEQ | BPF_K, 0, 1, static_cast<std::uint32_t>(number)},
        sock_filter{BPF_RET | BPF_K, 0, 0, SECCOMP_RET_ERRNO | static_cast<std::uint32_t>(error)},
        sock_filter{BPF_RET | BPF_K, 0, 0, SECCOMP_RET_ALLOW},
    };
    const sock_fprog program{.len = instructions.size(), .filter = instructions.data()};
    return ::prctl(PR_SET_NO_NEW_PRIVS, 1, 0, 0, 0) == 0 &&
           ::prctl(PR_SET_SECCOMP, SECCOMP_MODE_FILTER, &program) == 0;
}

} // namespace zentrill::test

#else

namespace zentrill::test {

bool makeSystemCallFail(int /*number*/, int /*error*/) {
    return false;
}

} // namespace zentrill::test

#endif
