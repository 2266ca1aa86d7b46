// The command-line parser: every switch of the program's command line becomes an entry
// of g_Env, its name upper-cased, its value as written without quotes (maybe empty).
#pragma once

// Returns 1 when the whole text was read (or there is no environment), 0 when it stopped
// at a character that begins no switch.
int clt_ParseCommandLine(const char* text);
