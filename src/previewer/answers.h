#pragma once

#include "previewer/channel.h"
#include "previewer/opened_file.h"

namespace tarnix::previewer {

// Each sends one answer, with what belongs to it, about the file.
void answerFolder(const Channel& channel, const OpenedFile& file);
void answerPicture(const Channel& channel, const OpenedFile& file, const OpenRequest& request,
                   const char* format);
// Takes a toolkit with fonts.
void answerDrawing(const Channel& channel, const OpenedFile& file, const OpenRequest& request);
// Goes on to answer for pages, until the window has gone.
void answerDocument(const Channel& channel, const OpenedFile& file);
// A text, else what is known of any file.
void answerAnyFile(const Channel& channel, const OpenedFile& file);

}  // namespace tarnix::previewer
