#pragma once

namespace zentrill {

/// One call operator out of several lambdas, for `std::visit`.
template <typename... Cases>
struct Overloaded : Cases... {
    using Cases::operator()...;
};

template <typename... Cases>
Overloaded(Cases...) -> Overloaded<Cases...>;

} // namespace zentrill
