// setup.ini's values as the launcher reads them: through the system's profile reader,
// with the launcher's buffer size and its default for numbers.
#pragma once

#include <cstdint>
#include <string>

class IniValues
{
  public:
    explicit IniValues(std::string path) : m_path(std::move(path)) {}

    // The value, cut to 259 characters; "" when the key is missing or empty.
    std::string String(const char* section, const char* key) const;
    // What GetPrivateProfileIntA gives with the launcher's default, 123456 (which the
    // launcher takes for a missing key).
    int32_t Number(const char* section, const char* key) const;

    static constexpr int32_t kMissingNumber = 123456;

  private:
    std::string m_path;
};
