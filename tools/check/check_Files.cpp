// File access for the checks.
#include "check_Files.h"

#include <cstdio>
#include <filesystem>

FileBytes ReadFileBytes(const std::string& path, int64_t mostBytes)
{
    FileBytes file;
    if (!IsFile(path)) return file;
    FILE* f = fopen(path.c_str(), "rb");
    if (!f) return file;
    std::error_code error;
    uintmax_t size = std::filesystem::file_size(path, error);
    if (error || size > uintmax_t(mostBytes))
    {
        fclose(f);
        file.state = error ? FileBytes::Missing : FileBytes::TooLarge;
        return file;
    }
    file.bytes.resize(size_t(size));
    size_t got = size ? fread(file.bytes.data(), 1, file.bytes.size(), f) : 0;
    fclose(f);
    file.bytes.resize(got);
    file.state = FileBytes::Read;
    return file;
}

bool IsFile(const std::string& path)
{
    std::error_code error;
    return std::filesystem::is_regular_file(path, error);
}

bool IsFolder(const std::string& path)
{
    std::error_code error;
    return std::filesystem::is_directory(path, error);
}

int64_t FileSize(const std::string& path)
{
    std::error_code error;
    if (!IsFile(path)) return -1;
    uintmax_t size = std::filesystem::file_size(path, error);
    return error ? -1 : int64_t(size);
}
