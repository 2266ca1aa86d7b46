// Path texts of the launcher: every folder and file name is joined with exactly one
// backslash at the seam, and folders read from outside are normalised the same way.
#pragma once

#include "FrameWork/_cult/Source/clt_String.h"

// Joins a folder and a name. An empty name gives the folder; an empty folder gives the
// name as a folder ("E:" becomes "E:\", one trailing backslash is dropped otherwise).
CltString JoinPath(const CltString& folder, const CltString& name);

// A folder text as the launcher keeps it: a short drive text ("E:", "E:\") becomes the
// drive root "E:\"; otherwise one trailing backslash is removed.
CltString NormaliseFolder(const CltString& folder);
