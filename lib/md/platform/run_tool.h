// Runs a command line of an outside tool. What a tool makes is judged by its being there, but one
// that ends with another status than 0 (killed, disk full) is told on standard error with its
// command, which names the file that may be incomplete.
#pragma once

#include <string>

void RunTool(const char* szCommand);

// A folder as the first part of a path in a command line, with the separator after it. An empty
// folder stays empty: the path then begins with the separator.
std::string CommandFolder(const char* szFolder, char cSep);
