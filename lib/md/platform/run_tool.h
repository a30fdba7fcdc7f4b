// Runs a command line of an outside tool. What a tool makes is judged by its being there, but one
// that ends with another status than 0 (killed, disk full) is told on standard error with its
// command, which names the file that may be incomplete.
#pragma once

void RunTool(const char* szCommand);
