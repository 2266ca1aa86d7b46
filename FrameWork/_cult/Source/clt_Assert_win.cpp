// The assertion boxes. Nothing is traced, no destructor runs and no window is closed
// first: the process ends through ExitProcess (0) right after the boxes.
#include "FrameWork/_cult/Source/clt_Assert.h"

#include <windows.h>

void clt_AssertFailed(const char* expression, const char* file, int line)
{
    CltString message = clt_AssertMessage(expression, file, line);
    if (MessageBoxA(nullptr, message.c_str(), "Guru meditation failure!",
                    MB_RETRYCANCEL | MB_ICONHAND) == IDRETRY)
        MessageBoxA(nullptr, clt_AssertDumpText().c_str(), "Environment Dump", MB_OK);
    ExitProcess(0);
}
