// Dialogs of the desktop.
#pragma once

namespace zvonivec {

/// Whether the desktop may have file dialogs of its own that the toolkit can show.
[[nodiscard]] bool desktopMayHaveFileDialogs();

} // namespace zvonivec
