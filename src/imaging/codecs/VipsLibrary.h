#pragma once

// Starts libvips at its first use and keeps it silent: its warnings go nowhere. Any thread may call it. One
// worker runs per processor core, so libvips itself is told to use one thread, and to cache no operations.
void StartVips();
