#pragma once

#include "support/TemporaryDirectory.h"

#include <optional>
#include <string>

namespace zentrill::test {

/// A fresh home folder: `HOME` points at it while the object lives, so that no test ever sees the real one.
class TemporaryHome : public TemporaryDirectory {
public:
    TemporaryHome();
    ~TemporaryHome();

    TemporaryHome(const TemporaryHome&) = delete;
    TemporaryHome& operator=(const TemporaryHome&) = delete;
    TemporaryHome(TemporaryHome&&) = delete;
    TemporaryHome& operator=(TemporaryHome&&) = delete;

private:
    std::optional<std::string> previous_;
};

} // namespace zentrill::test
