#pragma once

#include <memory>

#include "backends/linux/applications/workspace.h"
#include "backends/x11/session.h"
#include "platform/platform.h"

namespace tarnix {

// The platform of an X11 session on Linux: clipboard, windows and screens from the X server, programs and
// settings from the local system. Failures of the settings file are told on standard error, each once.
// `fileManager` is asked to show files; without one their folder is opened.
Platform sessionPlatform(x11::Session& session, std::shared_ptr<RunLoop> loop,
                         linux_desktop::Workspace::FileManager fileManager = {});

}  // namespace tarnix
