#pragma once

#include "support/confinement/Rung.h"

#include <stdexcept>
#include <string>
#include <vector>

/// Keeps programs whose job is to remove files from ever removing anybody's.
///
/// There is a ladder of means, see `Rung`; the first that the machine allows is taken. The process gets fresh
/// folders of its own, the only place where it can change anything: TMPDIR names the one, ZENTRILL_MEMORY one
/// in memory, and they go when the process has ended, however it did. ZENTRILL_CONFINEMENT forces a rung by
/// its name; `none` stands for a machine that allows no rung. ZENTRILL_CONFINED tells the programs that a
/// confined process starts of the rung, so that they need not do it again; they believe it only after having
/// tried.
namespace zentrill::confinement {

struct Confinement {
    Rung rung;
    /// Keeps the scratch alive as long as any process has it open; -1 where somebody else sees to that.
    int hold = -1;
};

/// The machine allows no rung; says why for each.
class NoRung : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

/// Confines this process for good, before it has started a thread. The folders `alsoWritable`, which exist,
/// stay writable. Throws `NoRung`, and other exceptions where a forced rung cannot be had or something is
/// wrong.
Confinement confineThisProcess(const std::vector<std::string>& alsoWritable = {});

/// The same for a program of which nothing may run unconfined: where it cannot be had the process ends, with
/// one line on stderr that says why, and with status 77 where the machine allows no rung. Otherwise the
/// scratch folder is the current one, unless the process was confined already.
void confineOrEnd();

} // namespace zentrill::confinement
