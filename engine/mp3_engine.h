// The real engine, with a function of the caller's that opens files.
#pragma once

#include "engine/reading/file_reader.h"
#include "playback/PlayerEngine.h"

#include <functional>
#include <memory>
#include <string>

namespace zvonivec {

/// Opens a file; null on failure. Called on the decoder thread, and on the user-interface thread
/// where no thread is to be had.
using OpenFile = std::function<std::shared_ptr<const FileReader>(const std::string& path)>;

/// Creates an engine like createPlayerEngine, which opens files with FileReader::open. Never null.
std::unique_ptr<PlayerEngine> createMp3Engine(PostToUserInterface post, OpenFile open);

} // namespace zvonivec
