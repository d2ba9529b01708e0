#include "platform/confinement.h"

#include <windows.h>

namespace zvonivec {

namespace {

template<typename Policy>
bool set(PROCESS_MITIGATION_POLICY which, Policy policy) {
    return SetProcessMitigationPolicy(which, &policy, sizeof policy) != FALSE;
}

} // namespace

// Windows has no rule for files that a process can put on itself.
Confinement confine() {
    PROCESS_MITIGATION_CHILD_PROCESS_POLICY children{};
    children.NoChildProcessCreation = 1;
    PROCESS_MITIGATION_IMAGE_LOAD_POLICY libraries{};
    libraries.NoRemoteImages = 1;
    libraries.NoLowMandatoryLabelImages = 1;
    libraries.PreferSystem32Images = 1;
    PROCESS_MITIGATION_EXTENSION_POINT_DISABLE_POLICY extensions{};
    extensions.DisableExtensionPoints = 1;

    const bool noChildren = set(ProcessChildProcessPolicy, children);
    const bool ownLibraries = set(ProcessImageLoadPolicy, libraries);
    const bool noExtensions = set(ProcessExtensionPointDisablePolicy, extensions);
    return {.files = false, .calls = noChildren && ownLibraries && noExtensions};
}

} // namespace zvonivec
