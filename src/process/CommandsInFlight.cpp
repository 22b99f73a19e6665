#include "process/CommandsInFlight.h"

#include <cerrno>
#include <system_error>
#include <utility>

#include <unistd.h>

namespace zentrill {

CommandsInFlight::Entry::Entry(CommandsInFlight& commands) : commands_(commands) {
    const std::lock_guard lock(commands_.mutex_);
    if (commands_.down_) {
        throw std::system_error(ECANCELED, std::generic_category());
    }
    if (!commands_.wake_.reading) {
        commands_.wake_ = Pipe::open();
    }
    descriptor_ = commands_.wake_.reading.get();
    ++commands_.count_;
}

CommandsInFlight::Entry::~Entry() {
    const std::lock_guard lock(commands_.mutex_);
    if (--commands_.count_ == 0) {
        commands_.idle_.notify_all();
    }
}

CommandsInFlight& CommandsInFlight::shared() {
    static auto& instance = *new CommandsInFlight;
    return instance;
}

void CommandsInFlight::shutDown(std::chrono::milliseconds limit) {
    std::unique_lock lock(mutex_);
    if (!std::exchange(down_, true) && wake_.writing) {
        // A byte that nobody reads instead of a hang-up, which a forked copy of this process could hold back.
        const char byte = 0;
        [[maybe_unused]] const ssize_t written = ::write(wake_.writing.get(), &byte, 1);
    }
    idle_.wait_for(lock, limit, [this] { return count_ == 0; });
}

} // namespace zentrill
