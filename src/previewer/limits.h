#pragma once

namespace tarnix::previewer {

// Before anything else: no core file, no descriptor but the channel's and that of handed-over bytes, and an
// end when that of the window's process comes.
void shutOff();
// What is read from here on may take 56 MiB of memory beyond what is in use by now.
void limitMemory();
// Another few seconds of processor time, for what is asked next. More end the process.
void allowProcessorTime();

}  // namespace tarnix::previewer
