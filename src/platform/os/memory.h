#pragma once

/// From now on every large block of memory goes back to the system when it is freed. By itself
/// glibc raises the size from which it does so to that of the largest block freed (mallopt(3)),
/// which after the first frame is nearly all of them: each time a camera is opened again the holes
/// they leave are filled otherwise, and the program grows. Call once, at the start of the program.
/// Does nothing with other C libraries.
void giveLargeBlocksBack();

/// Keeps the X11 windows from setting up OpenGL, which nothing here draws with and which costs
/// some 50 MB and a fifth of a second at the start. What the user has set in the environment
/// (QT_XCB_GL_INTEGRATION) holds. Before the application object.
void leaveOutOpenGl();
