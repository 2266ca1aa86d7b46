// The checker's findings: one line per problem, naming the file (relative to the product
// folder, with backslashes, as a publisher sees it on Windows), the line of the file when
// there is one, what is wrong, and what the launcher would do about it.
//
//   Install\setup.ini:9: [Startup] Disks = "two" is not a whole number; the launcher reads 0
#pragma once

#include <string>
#include <vector>

class CheckReport
{
  public:
    // line 0: the problem belongs to the file as a whole.
    void Add(const std::string& file, int line, const std::string& text);
    void Add(const std::string& file, const std::string& text) { Add(file, 0, text); }

    const std::vector<std::string>& Lines() const { return m_lines; }
    bool Clean() const { return m_lines.empty(); }

  private:
    std::vector<std::string> m_lines;
};

// What the player sees when a start-up assertion fails, for a report line:
// "the launcher stops at start-up (assertion EXPRESSION)".
std::string StopsAtStartUp(const std::string& assertion);

// "Install\setup.ini" for ("Install", "setup.ini"); the name alone when the folder is empty.
std::string CheckFileName(const std::string& folder, const std::string& name);
