// The sounds' check: presence and the RIFF WAVE layout of each file.
#include "check_Sounds.h"

#include "check_Files.h"

#include <cstdio>
#include <cstring>

namespace
{
// A sound larger than this is not read; nothing is said about its contents.
constexpr int64_t kMostWaveBytes = 64 << 20;

uint32_t Le32(const uint8_t* p)
{
    return p[0] | p[1] << 8 | p[2] << 16 | uint32_t(p[3]) << 24;
}
uint16_t Le16(const uint8_t* p)
{
    return uint16_t(p[0] | p[1] << 8);
}

struct Sound
{
    const char* name;
    const char* event;
};
const char kNoSound[] = "holds no sound (its \"data\" chunk is empty)";

const Sound kSounds[] = {
    {"OPEN", "the opening window"},
    {"CLICK", "a page button's click"},
    {"BACK", "the Back and Exit buttons"},
    {"START", "starting the game"},
    {"HOVER", "a page button taking the focus"},
};
} // namespace

std::string WaveProblem(const uint8_t* data, size_t size)
{
    if (size < 12 || memcmp(data, "RIFF", 4) != 0 || memcmp(data + 8, "WAVE", 4) != 0)
        return "is not a RIFF WAVE file";
    const uint8_t* format = nullptr;
    uint32_t formatSize = 0;
    bool haveData = false;
    uint64_t dataSize = 0, dataRoom = 0;
    size_t at = 12;
    while (size - at >= 8)
    {
        uint32_t chunkSize = Le32(data + at + 4);
        uint64_t room = size - at - 8;
        if (!memcmp(data + at, "fmt ", 4) && !format)
        {
            format = data + at + 8;
            formatSize = uint32_t(chunkSize < room ? chunkSize : room);
        }
        else if (!memcmp(data + at, "data", 4) && !haveData)
        {
            haveData = true;
            dataSize = chunkSize;
            dataRoom = room;
        }
        uint64_t next = uint64_t(at) + 8 + chunkSize + (chunkSize & 1);
        if (next > size) break;
        at = size_t(next);
    }
    if (!format) return "has no \"fmt \" chunk";
    if (formatSize < 16) return "has a \"fmt \" chunk of " + std::to_string(formatSize) + " bytes";
    uint16_t tag = Le16(format), channels = Le16(format + 2), block = Le16(format + 12),
             bits = Le16(format + 14);
    uint32_t rate = Le32(format + 4);
    if (tag != 1 && tag != 3 && tag != 0xFFFE)
    {
        char text[64];
        snprintf(text, sizeof text, "is not PCM (format tag 0x%04X)", tag);
        return text;
    }
    if (channels == 0 || rate == 0 || bits == 0 || block != channels * ((bits + 7) / 8))
        return "has a broken format (" + std::to_string(channels) + " channels, " +
               std::to_string(rate) + " Hz, " + std::to_string(bits) + " bits, blocks of " +
               std::to_string(block) + " bytes)";
    if (!haveData) return "has no \"data\" chunk";
    if (dataSize > dataRoom)
        return "has a \"data\" chunk of " + std::to_string(dataSize) + " bytes, but only " +
               std::to_string(dataRoom) + " follow";
    if (dataSize < block) return kNoSound;
    return "";
}

void CheckSounds(const std::string& dataDir, const std::string& shownDir, CheckReport& report)
{
    for (const Sound& sound : kSounds)
    {
        std::string name = std::string(sound.name) + ".wav";
        std::string shown = CheckFileName(shownDir, name);
        std::string instead =
            std::string("; ") + sound.event + " plays Windows' default sound instead";
        FileBytes file = ReadFileBytes(CheckFileName(dataDir, name), kMostWaveBytes);
        if (file.state == FileBytes::Missing)
            report.Add(shown, "missing" + instead);
        else if (file.state == FileBytes::TooLarge)
            continue;
        else if (std::string problem = WaveProblem(file.bytes.data(), file.bytes.size());
                 problem == kNoSound)
            report.Add(shown, problem + "; " + sound.event + " is silent");
        else if (!problem.empty())
            report.Add(shown, problem + instead);
    }
}
