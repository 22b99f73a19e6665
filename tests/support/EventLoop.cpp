#include "support/EventLoop.h"

#include <QEventLoop>
#include <QTimer>

namespace zentrill::test {

bool waitUntil(const std::function<bool()>& condition, std::chrono::milliseconds deadline) {
    QEventLoop loop;
    bool expired = false;
    QTimer limit;
    limit.setSingleShot(true);
    QObject::connect(&limit, &QTimer::timeout, &limit, [&expired] { expired = true; });
    limit.start(deadline);
    // Conditions that other threads make true cause no event here; the pulse has them looked at all the same.
    QTimer pulse;
    pulse.start(std::chrono::milliseconds(1));
    while (!condition()) {
        if (expired) {
            return false;
        }
        loop.processEvents(QEventLoop::WaitForMoreEvents);
    }
    return true;
}

} // namespace zentrill::test
