// The spine: start-up order, frame loop, end of the run. It owns no algorithm, only the order of
// all the others, and which folder and file exists when.
#pragma once

#include <cstdint>

// A program name with a backslash anywhere makes '\\' the separator of built paths and commands.
void SetPathSep(const char* szArgv0);

// The whole run. Every failure ends the process where it happens, and nothing is released then.
void MdSimRun(int32_t argc, char** argv);

// One frame: scheduling, canvases, detection, drawing and writing. Returns 1.
int32_t MdProcessFrame();

// Detection of one frame, with its dumps, report and block dots.
void MdDetectFrame();
