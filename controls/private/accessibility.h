// Controls as assistive technology sees them.
#pragma once

namespace zvonivec {

/// From now on every control is announced by its role and name, buttons, check boxes and
/// menu items can be pressed, and a bar tells its value and range. Called once, with the toolkit
/// up.
void exposeControls();

} // namespace zvonivec
