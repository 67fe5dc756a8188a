#pragma once

/// Tells assistive technology what the program's own widgets are; to Qt they are plain containers.
/// Before the first of them is made.
void installAccessibleRoles();
