// Checking a product folder as the launcher will see it: the launcher's executable beside
// its data folder (named by the anchor, "Install" unless the launcher is told otherwise),
// which holds setup.ini, the setup library, the skin, the sounds and the programs the
// buttons start.
#pragma once

#include "check_Report.h"

#include <string>

struct ProductFolder
{
    std::string productDir; // the launcher's folder, as the launcher names it
    std::string anchor;     // the data folder's name in it
    std::string DataDir() const { return CheckFileName(productDir, anchor); }
};

CheckReport CheckProduct(const ProductFolder& folder);
