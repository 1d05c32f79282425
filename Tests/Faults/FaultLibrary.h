#pragma once

/// A library that stands before the system's own calls that change files, also for libraries that were built
/// elsewhere. Calls below one folder are counted, and one of them fails. Linked to a test, or preloaded.
extern "C" {
/// Ends the process in the call, as a crash or the loss of power would.
inline constexpr int FaultEndsProcess = -1;

/// Counts calls below `folder` from now on; the `number`th, from 1, fails with `error` or ends the process. 0
/// for none.
void faultsArm(const char *folder, int number, int error);
/// Lets all calls through again; how many were counted.
int faultsDisarm();
}
