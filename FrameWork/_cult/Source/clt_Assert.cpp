// Assertion texts (portable), and the failure path for builds without message boxes.
#include "FrameWork/_cult/Source/clt_Assert.h"

#include "FrameWork/_cult/Source/clt_Environment.h"
#include "FrameWork/_cult/Source/clt_State.h"

#include <cstdio>
#include <cstdlib>

CltString clt_AssertMessage(const char* expression, const char* file, int line)
{
    CltString text;
    text.format("Assertion Failed: \"%s\"!\n\nFile:\t%s\nLine:\t%d\n\nAbnormal Termination.\n\n"
                "Select Retry for an environment dump.",
                expression, file, line);
    return text;
}

CltString clt_AssertDumpText()
{
    CltEnvironment* env = clt_GetState()->m_pEnv;
    CltString text;
    if (env)
        env->Dump(text);
    else
        text = "No environment present!";
    return text;
}

#ifndef _WIN32
// Without a desktop the box's texts go to the standard error, as if Retry were chosen.
void clt_AssertFailed(const char* expression, const char* file, int line)
{
    fprintf(stderr, "Guru meditation failure!\n%s\n",
            clt_AssertMessage(expression, file, line).c_str());
    fprintf(stderr, "Environment Dump\n%s", clt_AssertDumpText().c_str());
    fflush(stderr);
    _Exit(0);
}
#endif
