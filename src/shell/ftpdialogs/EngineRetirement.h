#pragma once

#include <memory>

class CFTPEngine;

// Cancels what an engine does and ends it without its window. What is under way is broken off at once, as a
// rule, but nobody shall wait for that. Returns at once. A program that ends doesn't wait either.
void RetireEngine(std::unique_ptr<CFTPEngine> engine);
