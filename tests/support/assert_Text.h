// Test support: the text of the framework's assertion box, and where an assertion stands
// in the source tree (for assertions that report their own line).
#pragma once

#include "harness/wine_Harness.h"

#include <algorithm>
#include <string>

namespace expect
{
inline std::string AssertText(const std::string& expression, const std::string& file, int line)
{
    return "Assertion Failed: \"" + expression + "\"!\n\nFile:\t" + file + "\nLine:\t" +
           std::to_string(line) +
           "\n\nAbnormal Termination.\n\nSelect Retry for an environment dump.";
}

#ifdef CLT_SOURCE_DIR
// The line (from 1) of the first occurrence of 'needle' in a source file, -1 if absent.
// The source tree is read through Wine's Z: drive, which maps the host's root.
inline int SourceLine(const std::string& relative, const std::string& needle)
{
    std::string path = std::string("Z:") + CLT_SOURCE_DIR + "/" + relative;
    std::replace(path.begin(), path.end(), '/', '\\');
    std::string text = harness::ReadTextFile(path);
    size_t at = text.find(needle);
    if (at == std::string::npos) return -1;
    return 1 + static_cast<int>(std::count(text.begin(), text.begin() + at, '\n'));
}
#endif
} // namespace expect
