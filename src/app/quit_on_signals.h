#pragma once

/// Lets the application end by its event loop, as if it were asked to quit, when SIGINT or SIGTERM
/// arrives: at the end of a session or at Ctrl+C settings are saved and recordings finished.
/// Call once, after the application object was made.
void quitOnSignals();
