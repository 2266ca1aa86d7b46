// CheckReport: formatting of the report lines.
#include "check_Report.h"

void CheckReport::Add(const std::string& file, int line, const std::string& text)
{
    std::string where = file;
    if (line > 0) where += ":" + std::to_string(line);
    m_lines.push_back(where + ": " + text);
}

std::string StopsAtStartUp(const std::string& assertion)
{
    return "the launcher stops at start-up (assertion " + assertion + ")";
}

std::string CheckFileName(const std::string& folder, const std::string& name)
{
    if (folder.empty()) return name;
    if (folder.back() == '\\' || folder.back() == '/') return folder + name;
    return folder + "\\" + name;
}
