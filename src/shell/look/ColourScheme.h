#pragma once

#include <QString>

// Gives the program a light or a dark palette. scheme: "light" or "dark"; anything else is what the desktop
// asks for. A desktop that styles its programs by itself is left alone. To be called once, on the screen's
// thread, after the application object has been made.
void ApplyColourScheme(const QString& scheme);
