#pragma once

class CSettingsStore;

// Gives the program a light or a dark palette: the setting ColourScheme is "light", "dark" or "desktop", the
// default, for what the desktop asks for. A desktop that styles its programs by itself is left alone. To be
// called once, on the screen's thread, behind the making of the application object.
void ApplyColourScheme(CSettingsStore& settings);
