// The edge of a window that is seen through outside its region.
#pragma once

class QPainter;
class QWidget;

namespace zvonivec {

/// Prepares a window that will get a region for a screen on which windows can be seen through. Must
/// be called before the window is created. Elsewhere it has no effect.
void prepareOutline(QWidget& window);

/// Whether a window must paint nothing outside its region, because only the painting limits it.
[[nodiscard]] bool paintsItsOutline(const QWidget& window);

/// Erases everything outside the window's region from a painter on the window's pixels, and smooths
/// the edge.
void eraseOutside(QPainter& painter, const QWidget& window);

} // namespace zvonivec
