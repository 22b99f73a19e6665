#pragma once

class QWindow;

namespace zentrill {

/// Gives the window the Mac's full-size content: a transparent title bar without its text, the dark vibrant
/// appearance, movable by its background. Does nothing on other systems, where the window keeps its native
/// frame.
#ifdef __APPLE__
void styleMacWindow(QWindow& window);
#else
inline void styleMacWindow(QWindow& /*window*/) {}
#endif

} // namespace zentrill
