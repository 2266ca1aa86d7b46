// The record file that TraceWin writes with /out: one line per received record (window
// tag, dwData, cbData, escaped text), split back into its records.
#pragma once

#include <string>
#include <vector>

namespace harness
{
struct TraceWinRecord
{
    std::string windowTag;
    unsigned long dwData = 0;
    unsigned long cbData = 0;
    std::string text; // unescaped
};
std::vector<TraceWinRecord> ReadTraceWinRecords(const std::string& path);
} // namespace harness
