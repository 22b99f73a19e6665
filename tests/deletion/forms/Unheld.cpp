// As on a machine whose kernel holds no deletion: nothing but the walk's own care does.
#include "DeletionForm.h"

namespace zentrill::test {

DeletionForm deletionForm() {
    return {.concurrency = DeletionConcurrency::ofThisMachine(), .domain = {}};
}

} // namespace zentrill::test
