// The setup library: it loads as the launcher loads it, has the exports the launcher
// looks up, makes its setup object, and that object has a text for every number this
// product shows (check_Texts.h). The library's own code runs, as in the launcher.
#pragma once

#include "check_Product.h"
#include "check_Settings.h"

void CheckSetupLibrary(const ProductFolder& folder, const SettingsFacts& facts,
                       CheckReport& report);
