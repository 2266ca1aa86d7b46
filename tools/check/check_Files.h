// Reading the product's files for the checks, portably: whether a file or folder is
// there, and a file's bytes up to a size cap.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

struct FileBytes
{
    enum State
    {
        Missing, // not there, or not a file that can be opened
        TooLarge,
        Read
    } state = Missing;
    std::vector<uint8_t> bytes;
};

FileBytes ReadFileBytes(const std::string& path, int64_t mostBytes);
// The file's size in bytes; -1 when it is not a file that is there.
int64_t FileSize(const std::string& path);
bool IsFile(const std::string& path);
bool IsFolder(const std::string& path);
