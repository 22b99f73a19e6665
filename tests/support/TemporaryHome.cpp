#include "support/TemporaryHome.h"

#include <cstdlib>

namespace zentrill::test {

TemporaryHome::TemporaryHome() {
    if (const char* home = std::getenv("HOME")) {
        previous_ = home;
    }
    ::setenv("HOME", path().c_str(), 1);
}

TemporaryHome::~TemporaryHome() {
    if (previous_) {
        ::setenv("HOME", previous_->c_str(), 1);
    } else {
        ::unsetenv("HOME");
    }
}

} // namespace zentrill::test
