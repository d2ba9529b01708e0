#include "skin/drawing/seat.h"

#include "skin/drawing/studio.h"

namespace zvonivec::skin {

double seatDepth(double distance) {
    return bevelledRise(SEAT_WALL - distance, SEAT_WALL, 2.6);
}

Light seatLight(double distance, Direction surface) {
    const double floor = smoothStep(0.7, -0.7, distance);
    return brushedMetal(lightOf(224, 229, 232), surface, 0) * mixed(1, 0.03, floor);
}

} // namespace zvonivec::skin
