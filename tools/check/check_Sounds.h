// The launcher's five sounds in the data folder: each must be a wave file that PlaySound
// plays. A missing or unplayable one is not an error the player is told about: the
// launcher asks for it without SND_NODEFAULT, so Windows plays its default sound instead.
#pragma once

#include "check_Report.h"

#include <cstddef>
#include <cstdint>
#include <string>

// What keeps a wave file's bytes from being played, or "" when nothing does.
std::string WaveProblem(const uint8_t* data, size_t size);

// dataDir: where the launcher looks; shownDir: how the report names that folder.
void CheckSounds(const std::string& dataDir, const std::string& shownDir, CheckReport& report);
