#pragma once

#include <windows.h>

namespace velm {

class CVelmFrame;

/// Downloads updates with a line of progress in the title button until Escape is pressed, merges what came for the
/// current file, and tells the user how it went.
void DownloadUpdates(CVelmFrame& frame, WORD id);

}  // namespace velm
