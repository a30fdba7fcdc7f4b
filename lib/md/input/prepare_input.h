// Turns whatever the configuration names as input into a raw 4:2:0 file of the working size, and
// fixes that size.
#pragma once

// Two stages: a 4:2:0 file at the input's own size (pPreInputPath), then a file at the working size
// (pScaledInputPath). Sets pToolDir, nMdWidth, nMdHeight and nMD_ScaledH, and may overwrite type
// and size of the input with what its name or the prober tells. Files it makes lie in
// OutputFilePath. Every failure ends the run with status 1; an outside command is judged by the
// file it leaves, never by its own status. Runs once, when the output folders exist.
void MdPrepareInput(const char* szArgv0);
