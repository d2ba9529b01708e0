#include "engine/failure.h"

namespace zvonivec {

std::string_view causeName(Failure::Cause cause) {
    switch (cause) {
    case Failure::Cause::notOpened:
        return "notOpened";
    case Failure::Cause::notMp3:
        return "notMp3";
    case Failure::Cause::unreadable:
        return "unreadable";
    case Failure::Cause::truncated:
        return "truncated";
    case Failure::Cause::decoderSetUp:
        return "decoderSetUp";
    case Failure::Cause::noDevice:
        return "noDevice";
    case Failure::Cause::deviceLost:
        return "deviceLost";
    case Failure::Cause::noThread:
        return "noThread";
    }
    return "";
}

} // namespace zvonivec
