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
// What reached the device, without the silence with which it pads a sound's last period
// (more of it when the machine is busy).
std::string Heard()
{
    std::string played = ReadTextFile(SOUND_CAPTURE);
    while (played.size() >= 2 && played.compare(played.size() - 2, 2, std::string(2, '\0')) == 0)
        played.resize(played.size() - 2);
    return played;
}

// The sample bytes of a WAV file written by the build (after its 44-byte header), without
// trailing silence.
std::string Samples(const char* sound)
{
    std::string wav = ReadTextFile(
        Join(Join(ExeFolder(), "..\\demo-product\\Install"), std::string(sound) + ".wav"));
    wav = wav.size() > 44 ? wav.substr(44) : std::string();
    while (wav.size() >= 2 && wav.compare(wav.size() - 2, 2, std::string(2, '\0')) == 0)
        wav.resize(wav.size() - 2);
    return wav;
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
