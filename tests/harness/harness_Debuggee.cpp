// Programs run as debuggees with their message boxes read and answered while they run.
#include "harness/wine_Harness.h"

#include <memory>

namespace harness
{
trace::DebuggeeResult RunProgram(const RunOptions& options)
{
    std::unique_ptr<BoxWatcher> watcher;
    return trace::RunDebuggee(options,
                              [&](DWORD processId)
                              {
                                  if (!options.leaveBoxesToUser)
                                      watcher = std::make_unique<BoxWatcher>(
                                          processId, options.answers, options.onBox);
                              });
}

} // namespace harness
