#include "platform/Text.h"

namespace zentrill {

std::string joined(const std::vector<std::string>& texts, std::string_view separator) {
    std::string result;
    for (const std::string& text : texts) {
        if (!result.empty()) {
            result += separator;
        }
        result += text;
    }
    return result;
}

} // namespace zentrill
