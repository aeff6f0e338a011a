#pragma once

#include <windows.h>

#include <memory>

#include "app/program.h"
#include "formula/formula_context.h"
#include "settings/settings.h"
#include "ui/bitmap.h"

namespace velm {

class CVelmFrame;

/// The program from its start to its end: settings, formula context, shared images and the one main window.
class CVelmApplication {
public:
    /// Services and options outlive the application. `programFolder` ends with a backslash; `cacheFolder` is for what
    /// the program can make again, empty for none.
    CVelmApplication(const CVelmServices& services, CVelmOptionsStore& options, CVelmString programFolder,
                     CVelmString cacheFolder);
    ~CVelmApplication();
    CVelmApplication(const CVelmApplication&) = delete;
    CVelmApplication& operator=(const CVelmApplication&) = delete;

    /// Starts the program and shows its window. False when that fails; the program then ends.
    bool InitInstance(int showCommand);

    /// Runs until the window is closed. Returns the process's exit status.
    int Run();

    /// Writes the settings and releases the shared images.
    void ExitInstance();

    /// The main window; null before InitInstance and after it is destroyed.
    CVelmFrame* Frame() const { return frame_.get(); }

private:
    CVelmServices services_;
    CVelmOptionsStore& options_;
    CVelmString programFolder_;
    CVelmString cacheFolder_;
    CVelmSettings settings_;
    FormulaContext context_;
    std::unique_ptr<CVelmBitmap> formatIcons_;
    std::unique_ptr<CVelmFrame> frame_;
};

}  // namespace velm
