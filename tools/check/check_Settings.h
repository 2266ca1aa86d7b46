// setup.ini: every section and key the launcher reads, the values whose absence stops it,
// values of the wrong form, the folders and programs the keys name; and the layout faults
// that the system's reader hides (repeated keys, keys the launcher never asks for).
#pragma once

#include "check_Product.h"
#include "check_Texts.h"

struct SettingsFacts
{
    ProductFacts product;
    std::string setupDll; // [Files] SetupDll, "" when missing
};

// setup.ini must be there.
SettingsFacts CheckSettings(const ProductFolder& folder, CheckReport& report);
