#include "platform/WorkerThread.h"

#include <pthread.h>
#include <string>

namespace zentrill {

void beginWorkerThread(std::string_view label) noexcept {
#if defined(__APPLE__)
    ::pthread_setname_np(std::string(label).c_str());
    ::pthread_set_qos_class_self_np(QOS_CLASS_USER_INITIATED, 0);
#else
    constexpr std::string_view::size_type longestName = 15;
    ::pthread_setname_np(::pthread_self(), std::string(label.substr(0, longestName)).c_str());
#endif
}

} // namespace zentrill
