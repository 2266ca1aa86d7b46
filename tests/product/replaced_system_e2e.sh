#!/bin/sh
# Runs the tests that change the Windows system (a replaced DSOUND.DLL) or end every
# program (a real ExitWindowsEx) in a throwaway copy of the test session's prefix, with a
# wineserver of its own, on the session's display; then checks from outside that the
# restart ended every program of that prefix. The session's own prefix is never touched.
#   replaced_system_e2e.sh SESSION_DIR TEST_EXE
set -u
session=$(cd "$1" && pwd)
exe=$2
WINE_SESSION_DIR=$session
. "$(dirname "$0")/../../tools/wine/env.sh"
throwaway=$session/throwaway
rm -rf "$throwaway"
mkdir -p "$throwaway"
cp -a "$WINEPREFIX" "$throwaway/prefix" || exit 1
export WINEPREFIX="$throwaway/prefix"
export LAUNCHER_THROWAWAY_PREFIX=1
fail() { echo "replaced_system_e2e: $*" >&2; status=1; }
status=0
# A persistent server and Wine's services, detached from our output (see session).
wineserver -p </dev/null >/dev/null 2>&1
wine cmd /c exit </dev/null >/dev/null 2>&1

# The programs' output goes to a file, printed after: a Wine service started again after
# the restart would otherwise inherit the caller's output and keep it open after this script
# has ended (ctest then waits for it until its time-out).
wine "$exe" --gtest_color=no >"$throwaway/tests.out" 2>&1 || fail "the replaced-library tests failed"
cat "$throwaway/tests.out"

log=$throwaway/restart.log
wine "$exe" --restart "$(winepath -w "$log")" >"$throwaway/restart.out" 2>&1
echo "restart driver ended with $? (it is ended by the restart)"
# The restart ends the prefix's programs one by one: give them a moment.
i=0
while pgrep -f 'restart_sentinel.exe' >/dev/null && [ $i -lt 100 ]; do sleep 0.1; i=$((i + 1)); done
cat >"$throwaway/expected.log" <<'END'
sentinel started
box [Tarn] [Tarn needs DirectX 7.0 or later, which is not installed on this computer.||Do you want to install DirectX now?] question, answered 6
box [DirectX Setup] [DirectX was installed. Windows must restart before you can play Tarn.||Do you want to restart now?] question, answered 6
END
diff "$throwaway/expected.log" "$log" || fail "the restart log differs from the expected one"
if pgrep -f 'restart_sentinel.exe' >/dev/null; then fail "a program outlived the restart"; fi
wineserver -k >/dev/null 2>&1
wineserver -w >/dev/null 2>&1
rm -rf "$throwaway"
[ $status = 0 ] && echo "replaced_system_e2e: passed"
exit $status
