#include "support/confinement/Confinement.h"

#include "support/confinement/Attempts.h"
#include "support/confinement/Check.h"
#include "support/confinement/Landlock.h"
#include "support/confinement/Namespaces.h"
#include "support/confinement/OwnUser.h"
#include "support/confinement/ScratchCleaner.h"
#include "support/confinement/Trial.h"

#include <cstdio>
#include <cstdlib>
#include <optional>

#include <sys/stat.h>
#include <unistd.h>

namespace zentrill::confinement {

namespace {

constexpr auto forcedVariable = "ZENTRILL_CONFINEMENT";
constexpr auto rungVariable = "ZENTRILL_CONFINED";
constexpr auto memoryVariable = "ZENTRILL_MEMORY";
constexpr auto folderVariable = "TMPDIR";
constexpr auto noRung = "none";

std::string valueOf(const char* variable) {
    const char* value = std::getenv(variable);
    return value != nullptr ? value : "";
}

std::optional<Rung> forcedRung() {
    const std::string name = valueOf(forcedVariable);
    if (name.empty()) {
        return std::nullopt;
    }
    if (name == noRung) {
        throw NoRung(std::string(forcedVariable) + " says so");
    }
    if (const std::optional<Rung> rung = rungNamed(name)) {
        return rung;
    }
    throw std::invalid_argument(std::string(forcedVariable) + " is \"" + name +
                                "\"; it takes namespaces, landlock, user or none");
}

/// The rung that the process which started this one took for both, if it did.
std::optional<Rung> inheritedRung() {
    const std::optional<Rung> rung = rungNamed(valueOf(rungVariable));
    if (!rung) {
        return std::nullopt;
    }
    const Scratch scratch = Scratch::at(valueOf(folderVariable), valueOf(memoryVariable));
    struct stat status{};
    const bool there = ::stat(scratch.canary.c_str(), &status) == 0 && S_ISREG(status.st_mode);
    return there && !succeededAttempt(scratch, scratch.folders()) ? rung : std::nullopt;
}

/// Takes the rung for good, and tries whether it holds.
void take(Rung rung, const Scratch& scratch, const std::vector<std::string>& alsoWritable) {
    std::vector<std::string> writable = scratch.folders();
    writable.insert(writable.end(), alsoWritable.begin(), alsoWritable.end());
    switch (rung) {
    case Rung::namespaces:
        enterNamespaces(writable);
        break;
    case Rung::landlock:
        enterLandlock(writable);
        break;
    case Rung::user:
        if (!alsoWritable.empty()) {
            throw std::runtime_error("another user cannot write to " + alsoWritable.front());
        }
        becomeOwnUser(writable);
        break;
    }
    if (const std::optional<std::string> changed = succeededAttempt(scratch, writable)) {
        throw std::runtime_error(*changed + " can still be changed");
    }
}

void takeForCleaning(Rung rung, const Scratch& scratch) {
    if (rung == Rung::user) {
        becomeOwnerOf(scratch.folder);
    } else {
        take(rung, scratch, {});
    }
}

/// The first rung that holds, as a child finds out that takes it.
Rung firstThatHolds(std::optional<Rung> forced, const Scratch& scratch,
                    const std::vector<std::string>& alsoWritable) {
    std::string reasons;
    for (const Rung rung : rungs) {
        if (forced && rung != *forced) {
            continue;
        }
        const auto failure = failureInChild([&] { take(rung, scratch, alsoWritable); });
        if (!failure) {
            return rung;
        }
        reasons.append(reasons.empty() ? "" : "; ").append(nameOf(rung)).append(": ").append(*failure);
    }
    if (forced) {
        throw std::runtime_error(std::string(forcedVariable) + " cannot be had here: " + reasons);
    }
    throw NoRung(reasons);
}

void tellPrograms(Rung rung, const Scratch& scratch) {
    ::setenv(folderVariable, scratch.folder.c_str(), 1);
    ::setenv(memoryVariable, scratch.memory.c_str(), 1);
    ::setenv(rungVariable, std::string(nameOf(rung)).c_str(), 1);
}

} // namespace

Confinement confineThisProcess(const std::vector<std::string>& alsoWritable) {
    const std::optional<Rung> forced = forcedRung();
    const std::optional<Rung> inherited = inheritedRung();
    if (inherited && (!forced || forced == inherited) && alsoWritable.empty()) {
        return {.rung = *inherited};
    }
    const Scratch scratch = Scratch::make();
    try {
        const Rung rung = firstThatHolds(forced, scratch, alsoWritable);
        const int hold = startScratchCleaner(scratch, [&] { takeForCleaning(rung, scratch); });
        take(rung, scratch, alsoWritable);
        tellPrograms(rung, scratch);
        return {.rung = rung, .hold = hold};
    } catch (...) {
        scratch.removeEmpty();
        throw;
    }
}

void confineOrEnd() {
    constexpr int failed = 1;
    constexpr int skipped = 77;
    try {
        if (confineThisProcess().hold >= 0) {
            check(::chdir(valueOf(folderVariable).c_str()), "the scratch folder");
        }
    } catch (const NoRung& nothing) {
        std::fprintf(stderr, "Skipped: removes files, and nothing here confines it: %s\n", nothing.what());
        ::_exit(skipped);
    } catch (const std::exception& error) {
        std::fprintf(stderr, "Cannot be confined: %s\n", error.what());
        ::_exit(failed);
    }
}

} // namespace zentrill::confinement
