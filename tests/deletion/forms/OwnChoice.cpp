// As the program deletes: trees as small as most of the cases' on one thread.
#include "DeletionForm.h"

namespace zentrill::test {

DeletionForm deletionForm() {
    return {.concurrency = DeletionConcurrency::ofThisMachine(), .domain = DeletionDomain::ofThisMachine()};
}

} // namespace zentrill::test
