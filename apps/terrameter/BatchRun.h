#pragma once

#include "CommandLine.h"

#include <cstdio>

// Exit status of a batch run.
enum BatchExit : int {
    BatchExitOk = 0,     // every line converted
    BatchExitFailed = 1, // some lines failed (marked and reported); the rest is written
    BatchExitNotRun = 2, // bad arguments, no system, unreadable input, output not written
};

// terrameter --batch: opens one system per thread, the input and the output, and converts.
// The output file is written through a temporary file in its folder that replaces it only
// when the whole input was read and written, so a failed run leaves it as it was; the input
// file is refused as output. Messages go to err.
int RunBatch(const TerrameterOptions& options, std::FILE* err);
