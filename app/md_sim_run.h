// SPDX-FileCopyrightText: 2026 the MD simulator authors
// SPDX-License-Identifier: BSD-2-Clause

// The order of a run: start-up, frame loop, end. No algorithm is here, only the order of all the
// others, and which folder and file exists when.
#pragma once

#include <cstdint>

// A program name with a backslash anywhere makes '\\' the separator of built paths and commands.
void SetPathSep(const char* szArgv0);

// The whole run: MdSimStart, MdSimNext until it gives false, MdSimEnd. Every failure ends the
// process where it happens, and nothing is released then.
void MdSimRun(int32_t argc, char** argv);

// The three steps of a run, for callers that look at its state after each frame (run_state.h).
// The start configures, prepares the input, allocates and opens the outputs.
void MdSimStart(int32_t argc, char** argv);

// One frame; the state shows it until the next call. False, with nothing done but the message,
// after FramesToBeProcessed frames or when the file holds no further whole frame.
bool MdSimNext();

// Closes the outputs, makes the mp4 files, releases everything.
void MdSimEnd();

// One frame: scheduling, canvases, detection, drawing and writing. Returns 1.
int32_t MdProcessFrame();

// Detection of one frame, with its dumps, report and block dots.
void MdDetectFrame();
