#pragma once

#include <utility>

namespace velm {

/// Calls a function at the end of its scope.
template <class Function>
class CVelmScopeExit {
public:
    explicit CVelmScopeExit(Function function) : function_(std::move(function)) {}
    ~CVelmScopeExit() { function_(); }
    CVelmScopeExit(const CVelmScopeExit&) = delete;
    CVelmScopeExit& operator=(const CVelmScopeExit&) = delete;

private:
    Function function_;
};

}  // namespace velm
