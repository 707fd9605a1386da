#pragma once

#include <QString>

// Who the program is to people and to desktops. Both come from the CMakeLists.txt of the whole project.

// "1.1.0"
QString GetProgramVersion();

// The name of the desktop entry without ".desktop", of the program's icon and of its metadata: how a desktop
// finds the window's entry.
QString GetApplicationId();
