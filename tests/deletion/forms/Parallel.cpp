// Every deletion is spread over several threads from its first folder on, where the program would use several
// at all.
#include "DeletionForm.h"

namespace zentrill::test {

DeletionForm deletionForm() {
    const DeletionConcurrency own = DeletionConcurrency::ofThisMachine();
    const bool fewDescriptors = own.threads == 1;
    return {.concurrency = fewDescriptors ? own : DeletionConcurrency{.threads = 4, .afterEntries = 0},
            .domain = DeletionDomain::ofThisMachine()};
}

} // namespace zentrill::test
