// The skin files in the data folder, read by the launcher's own image readers: each one
// present and readable, the sizes the window's fixed geometry assumes, the three page
// faces of one size and within the background, and the region file's rectangles, as
// the system will take them, inside the background.
#pragma once

#include "check_Report.h"

#include <string>

void CheckSkin(const std::string& dataDir, const std::string& shownDir, CheckReport& report);
