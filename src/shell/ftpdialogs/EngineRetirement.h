#pragma once

#include <memory>

class CFTPEngine;

// Cancels what an engine does and ends it without its window: a name that is being looked up or a connection
// that is being made can't be broken off, and a file is sent to its end, but nobody shall wait for that.
// Returns at once. A program that ends doesn't wait either.
void RetireEngine(std::unique_ptr<CFTPEngine> engine);
