// A small program on the framework whose start-up fails an assertion on request, so that
// the tests can read and answer the real assertion boxes.
//   -FAIL      CLT_ASSERT on a false condition after setting two environment values
//   -NOENV     as -FAIL, with no environment recorded
// Without a switch it ends normally with exit code 0.
#include "FrameWork/_cult/Source/clt_App.h"
#include "FrameWork/_cult/Source/clt_Assert.h"
#include "FrameWork/_cult/Source/clt_Environment.h"
#include "FrameWork/_cult/Source/clt_State.h"

#define CLT_SOURCE "tests/FrameWork/_cult/assert_probe"

namespace
{
class ProbeApp : public CltApp
{
  public:
    int Init() override
    {
        g_Env.Set("ProbeName", "Guru", true);
        g_Env.Set("Probe Empty", "", false);
        int probeValue = g_Env.Has("FAIL", 1) + g_Env.Has("NOENV", 1);
        if (g_Env.Has("NOENV", 1)) clt_GetState()->m_pEnv = nullptr;
        CLT_ASSERT(probeValue == 0);
        return 0;
    }
};

ProbeApp s_app;
} // namespace
