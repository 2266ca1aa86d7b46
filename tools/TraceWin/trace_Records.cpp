// Reading the record file that TraceWin writes with /out: (see trace_Records.h).
#include "tools/TraceWin/trace_Records.h"

#include "harness/wine_Harness.h"

namespace harness
{
std::vector<TraceWinRecord> ReadTraceWinRecords(const std::string& path)
{
    std::vector<TraceWinRecord> records;
    std::string content = ReadTextFile(path);
    size_t pos = 0;
    while (pos < content.size())
    {
        size_t end = content.find('\n', pos);
        if (end == std::string::npos) end = content.size();
        std::string line = content.substr(pos, end - pos);
        pos = end + 1;
        size_t t1 = line.find('\t'), t2 = line.find('\t', t1 + 1), t3 = line.find('\t', t2 + 1);
        if (t3 == std::string::npos) continue;
        TraceWinRecord r;
        r.windowTag = line.substr(0, t1);
        r.dwData = strtoul(line.substr(t1 + 1, t2 - t1 - 1).c_str(), nullptr, 16);
        r.cbData = strtoul(line.substr(t2 + 1, t3 - t2 - 1).c_str(), nullptr, 10);
        const std::string escaped = line.substr(t3 + 1);
        for (size_t i = 0; i < escaped.size(); ++i)
        {
            if (escaped[i] != '\\' || i + 1 >= escaped.size())
            {
                r.text += escaped[i];
                continue;
            }
            char c = escaped[++i];
            if (c == 'n')
                r.text += '\n';
            else if (c == 't')
                r.text += '\t';
            else if (c == 'r')
                r.text += '\r';
            else if (c == 'x' && i + 2 < escaped.size() + 0)
            {
                r.text += static_cast<char>(strtoul(escaped.substr(i + 1, 2).c_str(), nullptr, 16));
                i += 2;
            }
            else
                r.text += c;
        }
        records.push_back(r);
    }
    return records;
}
} // namespace harness
