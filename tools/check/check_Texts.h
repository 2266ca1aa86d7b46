// The setup library's texts: every number the launcher's pages, messages and titles use
// for this product must give a text, and a text's $[Name] references must name values
// the launcher has (an unknown one reads "[Undefined]").
#pragma once

#include "check_Report.h"

#include <cstdint>
#include <functional>
#include <string>

// What setup.ini says about the product, as far as it decides which texts can show.
struct ProductFacts
{
    bool demo = false;         // [Startup] AppType is exactly "Demo"
    bool retail = false;       // [Startup] AppType is "Retail" in any case: the disc is checked
    bool severalDisks = false; // [Startup] Disks above 1
    bool installDX = false;    // [Startup] InstallDX non-zero
    bool memoryTest = false;   // [SysCheck] RAM given
    bool pagingTest = false;   // [Buffer] Product given
};

// The text of a number as the setup object hands it out (null counts as empty).
using TextSource = std::function<const char*(uint16_t number)>;

// shownLibrary names the setup library in the report.
void CheckTexts(const TextSource& text, const ProductFacts& facts, const std::string& shownLibrary,
                CheckReport& report);
