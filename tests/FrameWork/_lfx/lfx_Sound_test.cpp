// PlaySoundByName against a real sound device: this program runs with an ALSA
// configuration whose default device writes everything played to a file (CTest gives it
// a HOME of its own), so the test can see what was played, and when.
#include "FrameWork/_cult/Source/clt_Environment.h"
#include "FrameWork/_lfx/Source/lfx_System.h"
#include "harness/wine_Harness.h"

#include <gtest/gtest.h>

using namespace harness;

namespace
{
// The bytes without the silence with which the device pads a sound's last period (more of it
// when the machine is busy); a wave file's own trailing silence goes the same way.
std::string WithoutTrailingSilence(std::string bytes)
{
    while (bytes.size() >= 2 && bytes.compare(bytes.size() - 2, 2, std::string(2, '\0')) == 0)
        bytes.resize(bytes.size() - 2);
    return bytes;
}

// What reached the device.
std::string Heard()
{
    return WithoutTrailingSilence(ReadTextFile(SOUND_CAPTURE));
}

// The sample bytes of a WAV file written by the build (after its 44-byte header).
std::string Samples(const char* sound)
{
    std::string wav = ReadTextFile(
        Join(Join(ExeFolder(), "..\\demo-product\\Install"), std::string(sound) + ".wav"));
    return WithoutTrailingSilence(wav.size() > 44 ? wav.substr(44) : std::string());
}
} // namespace

TEST(LfxSound, PlayingWithWaitReturnsAfterTheWholeSound)
{
    g_Env.Set("DataDir", Join(ExeFolder(), "..\\demo-product\\Install").c_str(), false);
    std::string start = Samples("START"), click = Samples("CLICK");
    ASSERT_GT(start.size(), 20000u);

    // The device starts its file anew for every sound, so the file holds the last one.
    EXPECT_EQ(g_LfxMain.PlaySoundByName("START", true), 1);
    // Every sample of START.wav has reached the device when the call returns.
    EXPECT_EQ(Heard(), start);

    EXPECT_EQ(g_LfxMain.PlaySoundByName("CLICK", false), 1); // returns at once
    for (int i = 0; i < 50 && Heard() != click; ++i)
        Sleep(100);
    EXPECT_EQ(Heard(), click);
}
