#include "controller/ConfirmationCopy.h"

namespace zentrill::ConfirmationCopy {

std::string applications(const std::vector<std::string>& names, bool preserveCredentials) {
    std::string message = "Selected: ";
    for (std::size_t index = 0; index < names.size(); ++index) {
        if (index != 0) {
            message += ", ";
        }
        message += names[index];
    }
    message +=
        preserveCredentials
            ? ". Known app runtimes will be removed. Recognized credentials and uncertain files in "
              "selected data trees will be left for review; residual data may remain."
            : ". Files inside the selected uninstall targets, including recognized nested credentials, "
              "will be permanently removed.";
    return message;
}

} // namespace zentrill::ConfirmationCopy
