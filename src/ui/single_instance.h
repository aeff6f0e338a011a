#pragma once

#include <windows.h>

namespace velm {

/// Lets one copy of a program run at a time in a session.
class CVelmSingleInstance {
public:
    /// `name` is the program's own; `frameClass`, the class of its main window, outlives the object.
    CVelmSingleInstance(const wchar_t* name, const wchar_t* frameClass);
    ~CVelmSingleInstance();
    CVelmSingleInstance(const CVelmSingleInstance&) = delete;
    CVelmSingleInstance& operator=(const CVelmSingleInstance&) = delete;

    bool IsFirst() const { return first_; }

    /// Brings the first copy's window to the front, waiting a little for one that is just starting.
    void ShowFirst() const;

private:
    const wchar_t* frameClass_;
    HANDLE mutex_;
    bool first_;
};

}  // namespace velm
