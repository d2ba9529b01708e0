// The bridge from controls to assistive technology.
#pragma once

namespace zvonivec {

/// Announces every control to assistive technology by its AccessibleTraits from now on. Called
/// once, after the toolkit has started.
void exposeControls();

} // namespace zvonivec
