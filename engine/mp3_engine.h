// The real engine, for those who bring its files.
#pragma once

#include "engine/file_reader.h"
#include "playback/PlayerEngine.h"

#include <functional>
#include <memory>
#include <string>

namespace zvonivec {

/// Opens a file; null when it can't be. Called on the user-interface thread, by setURL.
using OpenFile = std::function<std::shared_ptr<const FileReader>(const std::string& path)>;

/// As createPlayerEngine, which opens files by FileReader::open. Never null.
std::unique_ptr<PlayerEngine> createMp3Engine(PostToUserInterface post, OpenFile open);

} // namespace zvonivec
